#include "ui/exchange/ShortcutExchange.h"

#include "app/Language.h"
#include "model/OneLine.h"
#include "model/ShortcutStore.h"
#include "model/document/ShortcutDecoder.h"
#include "platform/ApplicationBundles.h"
#include "platform/FileManager.h"
#include "platform/Services.h"
#include "ui/icons/Symbols.h"
#include "ui/parts/AppName.h"
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

/// Names the entries that would not be opened; empty if there are none, or the document is no list.
std::string warningAbout(const std::string& document) {
    constexpr std::size_t mostNamed = 10;
    std::size_t count = 0;
    std::string names;
    try {
        for (const auto& shortcut : decodeShortcuts(document)) {
            auto& bundles = platform::services().applicationBundles;
            if (bundles.standingOf(shortcut.appPath) == platform::Standing::untrusted &&
                ++count <= mostNamed) {
                const auto name = shownAppName(shortcut.appPath, shortcut.appName).toStdString();
                names += '\n' + oneLine(name + " (" + shortcut.appPath + ')');
            }
        }
    } catch (const platform::LocalizedError&) {
        return {}; // told when the list is to be replaced
    }
    if (count > mostNamed) {
        const auto rest = std::to_string(count - mostNamed);
        names += localized("\n他 " + rest + " 件", "\nand " + rest + " more");
    }
    return count == 0
               ? std::string{}
               : localized(
                     "\n\nアプリケーションフォルダの外にあり、信頼されていないため起動されません:",
                     "\n\nThese lie outside of the applications folders and are not trusted, "
                     "so they will not be opened:") +
                     names;
}

Alert importQuestion(const std::string& document) {
    return {.message = localized("ショートカットをインポートしますか？", "Import Shortcuts?"),
            .informativeText = localized("現在のショートカット設定はすべて上書きされます。",
                                         "All current shortcut settings will be replaced.") +
                               warningAbout(document),
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
    presentation.ask(importQuestion(document), [document, presentation](int button) {
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
