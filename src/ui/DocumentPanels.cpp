#include "ui/DocumentPanels.h"

#include "app/Language.h"

namespace hollowfernpike {

namespace {

// The desktop's own panel would speak the desktop's language.
std::unique_ptr<QFileDialog> makePanel() {
    auto panel = std::make_unique<QFileDialog>();
    panel->setOption(QFileDialog::DontUseNativeDialog);
    panel->setNameFilter("JSON (*.json)");
    return panel;
}

} // namespace

std::unique_ptr<QFileDialog> makeSavePanel() {
    auto panel = makePanel();
    panel->setWindowTitle(localized("ショートカットをエクスポート", "Export Shortcuts"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setDefaultSuffix("json");
    panel->selectFile("Hollowfernpike.json");
    return panel;
}

std::unique_ptr<QFileDialog> makeOpenPanel() {
    auto panel = makePanel();
    panel->setWindowTitle(localized("ショートカットをインポート", "Import Shortcuts"));
    panel->setFileMode(QFileDialog::ExistingFile);
    return panel;
}

} // namespace hollowfernpike
