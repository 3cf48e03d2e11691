#include "ui/EntryFilePanel.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"

#include <QFileDialog>

#include <utility>

namespace hollowfernpike::EntryFilePanel {

namespace {

QString startingDirectory() {
    const auto directories = platform::services().applicationBundles.applicationDirectories();
    return directories.empty() ? QDir::homePath() : QString::fromStdString(directories.front());
}

void setLabels(QFileDialog& dialog) {
    dialog.setWindowTitle(localized("アプリを選択", "Select an App"));
    dialog.setLabelText(QFileDialog::LookIn, localized("場所:", "Look in:"));
    dialog.setLabelText(QFileDialog::FileName, localized("ファイル名:", "File name:"));
    dialog.setLabelText(QFileDialog::FileType, localized("種類:", "Files of type:"));
    dialog.setLabelText(QFileDialog::Accept, localized("開く", "Open"));
    dialog.setLabelText(QFileDialog::Reject, localized("キャンセル", "Cancel"));
}

} // namespace

// The toolkit's own dialog: a desktop's may show entry files under other names, or start them.
void beginSheet(QWidget& window, std::function<void(const std::string& path)> onChosen) {
    auto* dialog = new QFileDialog(&window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setDirectory(startingDirectory());
    dialog->setNameFilter(QString(localized("アプリ", "Apps")) + " (*.desktop)");
    setLabels(*dialog);
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &window,
        [onChosen = std::move(onChosen)](const QString& file) { onChosen(file.toStdString()); });
    dialog->open();
}

} // namespace hollowfernpike::EntryFilePanel
