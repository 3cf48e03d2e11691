#pragma once

#include "support/TemporaryDirectory.h"
#include "ui/ModalAnswers.h"
#include "ui/exchange/ShortcutExchange.h"
#include "ui/window/WindowTest.h"

#include <deque>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// Export and import from the menu as well as from the window. The file panels look at real
/// folders; what is in the files is the fake file manager's.
class ExchangeTest : public WindowTest {
protected:
    ExchangeTest() {
        speak(Language::english);
        addShortcut("Editor", 0, command);
    }

    /// Makes a file that panels can see.
    std::string file(const std::string& name, const std::string& contents) {
        const auto path = folder.path() / name;
        std::ofstream(path).put('\n');
        desktop.fileManager.files[path] = contents;
        return path;
    }

    std::string newFile(const std::string& name) const { return folder.path() / name; }

    /// The document of a list with one shortcut.
    static std::string documentWith(const std::string& name) {
        return R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E01","keyCode":1,"modifierFlags":1048576,)"
               R"("appPath":"/a.desktop","appBundleIdentifier":"a","appName":")" +
               name + R"("}])";
    }

    static std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
            names.push_back(shortcut.appName);
        }
        return names;
    }

    /// What the store says against a document, in English.
    static std::string reasonAgainst(const std::string& document) {
        try {
            ShortcutStore::shared().importData(document);
        } catch (const platform::LocalizedError& error) {
            return error.english();
        }
        ADD_FAILURE() << "is a list: " << document;
        return {};
    }

    /// A list that no document can hold.
    static void spoilTheList() { addShortcut("\xff", 1, command); }

    TemporaryDirectory folder;
};

/// Where export and import begin, and how their dialogs are shown from there.
struct EntryPoint {
    const char* name;
    const char* kind; ///< how panels and the question are shown
    bool isMenu;
};

// NOLINTNEXTLINE(readability-identifier-naming): called so by the test library
inline void PrintTo(const EntryPoint& entry, std::ostream* out) {
    *out << entry.name;
}

class ExchangeFromEach : public ExchangeTest, public testing::WithParamInterface<EntryPoint> {
protected:
    using Answers = std::deque<ModalAnswers::Answer>;
    using Shown = std::vector<std::string>;

    static void exportFromMenu() {
        ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
    }
    static void importFromMenu() {
        ShortcutExchange::importShortcuts(ExchangePresentation::modal());
    }

    /// Exports, or imports, and returns what was shown until every answer was given.
    Shown exportAnswering(const Answers& given) {
        return answering(given, exportFromMenu, &MainWindowController::exportShortcuts);
    }
    Shown importAnswering(const Answers& given) {
        return answering(given, importFromMenu, &MainWindowController::importShortcuts);
    }

    /// The same for what succeeds: the menu tells of it in an alert, which this answers, too.
    Shown exportSuccessfully(Answers given) { return exportAnswering(andOk(std::move(given))); }
    Shown importSuccessfully(Answers given) { return importAnswering(andOk(std::move(given))); }

    /// `shown`, followed by the alert that only the menu shows after a success.
    static Shown withSuccess(Shown shown, const std::string& success) {
        if (GetParam().isMenu) {
            shown.push_back(success);
        }
        return shown;
    }

    static std::string kind(const std::string& dialog) { return GetParam().kind + (" " + dialog); }

    static std::string question() {
        return kind("warning | Import Shortcuts? | All current shortcut settings will be "
                    "replaced. | OK | Cancel");
    }

private:
    Shown answering(const Answers& given, void (*fromMenu)(),
                    void (MainWindowController::*fromWindow)()) {
        ModalAnswers answers(given);
        if (GetParam().isMenu) {
            fromMenu();
        } else {
            (open().*fromWindow)();
        }
        EXPECT_TRUE(eventually([&] { return answers.allGiven(); }));
        settle();
        return answers.shown();
    }

    static Answers andOk(Answers given) {
        if (GetParam().isMenu) {
            given.push_back(press("OK"));
        }
        return given;
    }
};

inline auto entryPoints() {
    return testing::Values(EntryPoint{"menu", "modal", true}, EntryPoint{"window", "sheet", false});
}

inline std::string entryPointName(const testing::TestParamInfo<EntryPoint>& info) {
    return info.param.name;
}

} // namespace hollowfernpike::test
