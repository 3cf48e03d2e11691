#include "ui/editor/EntryFilePanel.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"
#include "ui/parts/OpenPanel.h"

#include <QDir>

#include <utility>

namespace hollowfernpike {

namespace {

QString startingDirectory() {
    const auto directories = platform::services().applicationBundles.applicationDirectories();
    return directories.empty() ? QDir::homePath() : QString::fromStdString(directories.front());
}

} // namespace

// The desktop's own panel may show entry files under the names of their applications.
void beginEntryFilePanel(QWidget& window, std::function<void(const std::string& path)> onChosen) {
    auto* dialog = new OpenPanel(localized("アプリ", "Apps"), ".desktop", &window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setDirectory(startingDirectory());
    dialog->setWindowTitle(localized("アプリを選択", "Select an App"));
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &window,
        [onChosen = std::move(onChosen)](const QString& file) { onChosen(file.toStdString()); });
    dialog->open();
}

} // namespace hollowfernpike
