#include "ui/exchange/ShortcutExchange.h"

#include "app/Language.h"
#include "model/ShortcutStore.h"
#include "platform/FileManager.h"
#include "platform/Services.h"
#include "ui/icons/Symbols.h"
#include "ui/parts/FilePanel.h"

#include <memory>
#include <string>

namespace hollowfernpike::ShortcutExchange {

namespace {

constexpr auto fileKind = "JSON";
constexpr auto fileExtension = ".json";

std::unique_ptr<QFileDialog> makeSavePanel() {
    auto panel = std::make_unique<FilePanel>(FilePanel::Purpose::save, fileKind, fileExtension);
    panel->setWindowTitle(localized("ショートカットをエクスポート", "Export Shortcuts"));
    panel->selectFile("Hollowfernpike.json");
    return panel;
}

std::unique_ptr<QFileDialog> makeImportPanel() {
    auto panel = std::make_unique<FilePanel>(FilePanel::Purpose::open, fileKind, fileExtension);
    panel->setWindowTitle(localized("ショートカットをインポート", "Import Shortcuts"));
    return panel;
}

void tellFailure(std::string message, const platform::LocalizedError* error = nullptr) {
    Alert alert{.message = std::move(message)};
    if (error != nullptr) {
        alert.informativeText = localized(error->japanese(), error->english());
    }
    alert.runModal();
}

const char* exportFailed() {
    return localized("エクスポートに失敗しました。", "Failed to export shortcuts.");
}

Alert exportSucceeded() {
    return {.style = Alert::Style::informational,
            .message = localized("ショートカットをエクスポートしました。",
                                 "Shortcuts exported successfully."),
            .icon = symbolImage(Symbol::checkmarkCircle, SymbolTint::accent)};
}

Alert importSucceeded() {
    return {.style = Alert::Style::informational,
            .message = localized("ショートカットをインポートしました。",
                                 "Shortcuts imported successfully.")};
}

Alert importQuestion() {
    return {.message = localized("ショートカットをインポートしますか？", "Import Shortcuts?"),
            .informativeText = localized("現在のショートカット設定はすべて上書きされます。",
                                         "All current shortcut settings will be replaced."),
            .buttons = {"OK", localized("キャンセル", "Cancel")}};
}

void write(const std::string& document, const std::filesystem::path& file,
           const ExchangePresentation& presentation) {
    try {
        platform::services().fileManager.writeFileAtomically(file, document);
    } catch (const platform::LocalizedError& error) {
        tellFailure(exportFailed(), &error);
        return;
    }
    presentation.tellSuccess(exportSucceeded());
}

void replaceList(const std::string& document, const ExchangePresentation& presentation) {
    try {
        ShortcutStore::shared().importData(document);
    } catch (const platform::LocalizedError& error) {
        tellFailure(localized("ファイル形式が正しくありません。", "Invalid file format."), &error);
        return;
    }
    presentation.tellSuccess(importSucceeded());
}

void read(const std::filesystem::path& file, const ExchangePresentation& presentation) {
    std::string document;
    try {
        document = platform::services().fileManager.readFile(file);
    } catch (const platform::LocalizedError& error) {
        tellFailure(localized("インポートに失敗しました。", "Failed to import shortcuts."), &error);
        return;
    }
    presentation.ask(importQuestion(), [document, presentation](int button) {
        if (button == 0) {
            replaceList(document, presentation);
        }
    });
}

} // namespace

void exportShortcuts(const ExchangePresentation& presentation) {
    const auto document = ShortcutStore::shared().exportData();
    if (!document) {
        tellFailure(exportFailed());
        return;
    }
    presentation.choose(makeSavePanel(),
                        [document = *document, presentation](const std::filesystem::path& file) {
                            write(document, file, presentation);
                        });
}

void importShortcuts(const ExchangePresentation& presentation) {
    presentation.choose(makeImportPanel(), [presentation](const std::filesystem::path& file) {
        read(file, presentation);
    });
}

} // namespace hollowfernpike::ShortcutExchange
