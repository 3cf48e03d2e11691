#include "ui/editor/EntryFilePanel.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"

#include <QApplication>
#include <QFileDialog>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

QString startingDirectory() {
    const auto directories = platform::services().applicationBundles.applicationDirectories();
    return directories.empty() ? QDir::homePath() : QString::fromStdString(directories.front());
}

/// Shows only entry files, and beeps if the path of another file is typed.
class EntryFileDialog final : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

private:
    void accept() override {
        if (std::ranges::any_of(selectedFiles(), isOfAnotherKind)) {
            QApplication::beep();
        } else {
            QFileDialog::accept();
        }
    }

    static bool isOfAnotherKind(const QString& path) {
        const QFileInfo file(path);
        return file.exists() && !file.isDir() && !path.endsWith(".desktop", Qt::CaseInsensitive);
    }
};

} // namespace

// Not the desktop's own panel: that is in the desktop's language, and may show entry files under
// the names of their applications.
void beginEntryFilePanel(QWidget& window, std::function<void(const std::string& path)> onChosen) {
    auto* dialog = new EntryFileDialog(&window);
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
