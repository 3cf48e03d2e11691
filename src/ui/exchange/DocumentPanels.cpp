#include "ui/exchange/DocumentPanels.h"

#include "app/Language.h"

#include <QFileInfo>
#include <QLineEdit>

namespace hollowfernpike {

namespace {

// The desktop's own panel would speak the desktop's language.
void setUp(QFileDialog& panel) {
    panel.setOption(QFileDialog::DontUseNativeDialog);
    panel.setNameFilter("JSON (*.json)");
}

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
        if (!name.endsWith(".json", Qt::CaseInsensitive)) {
            field->setText(name + ".json");
        }
    }
};

} // namespace

std::unique_ptr<QFileDialog> makeSavePanel() {
    auto panel = std::make_unique<SavePanel>();
    setUp(*panel);
    panel->setWindowTitle(localized("ショートカットをエクスポート", "Export Shortcuts"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->selectFile("Hollowfernpike.json");
    return panel;
}

std::unique_ptr<QFileDialog> makeOpenPanel() {
    auto panel = std::make_unique<QFileDialog>();
    setUp(*panel);
    panel->setWindowTitle(localized("ショートカットをインポート", "Import Shortcuts"));
    panel->setFileMode(QFileDialog::ExistingFile);
    return panel;
}

} // namespace hollowfernpike
