#include "ui/exchange/DocumentPanels.h"

#include "app/Language.h"
#include "ui/parts/OpenPanel.h"

#include <QFileInfo>
#include <QLineEdit>

namespace hollowfernpike {

namespace {

constexpr auto kind = "JSON";
constexpr auto extension = ".json";

/// Gives every name the extension; the toolkit would do so only for names without a dot.
class SavePanel final : public QFileDialog {
    void accept() override {
        const QStringList files = selectedFiles();
        if (!files.isEmpty() && !QFileInfo(files.front()).isDir()) {
            completeName();
        }
        QFileDialog::accept();
    }

    // In the text field, so that the question before replacing a file is about the full name.
    void completeName() {
        auto* field = findChild<QLineEdit*>("fileNameEdit");
        if (field == nullptr) {
            return;
        }
        const QString name = field->text().remove('"'); // to the toolkit, quotes delimit names
        if (!name.endsWith(extension, Qt::CaseInsensitive)) {
            field->setText(name + extension);
        }
    }
};

} // namespace

std::unique_ptr<QFileDialog> makeSavePanel() {
    auto panel = std::make_unique<SavePanel>();
    panel->setOption(QFileDialog::DontUseNativeDialog); // that speaks the desktop's language
    panel->setNameFilter(QStringLiteral("%1 (*%2)").arg(kind, extension));
    panel->setWindowTitle(localized("ショートカットをエクスポート", "Export Shortcuts"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->selectFile("Hollowfernpike.json");
    return panel;
}

std::unique_ptr<QFileDialog> makeOpenPanel() {
    auto panel = std::make_unique<OpenPanel>(kind, extension);
    panel->setWindowTitle(localized("ショートカットをインポート", "Import Shortcuts"));
    return panel;
}

} // namespace hollowfernpike
