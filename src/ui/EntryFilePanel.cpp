#include "ui/EntryFilePanel.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"

#include <QFileDialog>

#include <utility>

namespace hollowfernpike {

namespace {

QString startingDirectory() {
    const auto directories = platform::services().applicationBundles.applicationDirectories();
    return directories.empty() ? QDir::homePath() : QString::fromStdString(directories.front());
}

} // namespace

// The toolkit's own panel: a desktop's speaks the desktop's language, and may show entry files
// under the names of their applications.
void beginEntryFilePanel(QWidget& window, std::function<void(const std::string& path)> onChosen) {
    auto* dialog = new QFileDialog(&window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setDirectory(startingDirectory());
    dialog->setNameFilter(QString(localized("アプリ", "Apps")) + " (*.desktop)");
    dialog->setWindowTitle(localized("アプリを選択", "Select an App"));
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &window,
        [onChosen = std::move(onChosen)](const QString& file) { onChosen(file.toStdString()); });
    dialog->open();
}

} // namespace hollowfernpike
