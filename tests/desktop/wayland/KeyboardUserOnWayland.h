#pragma once

#include "desktop/editor/ScreenReader.h"
#include "desktop/wayland/WindowOnWaylandStory.h"
#include "desktop/windows/WindowTitles.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

/// The utility's windows in one of its languages.
struct WindowWords {
    const char* language; ///< as the settings call it
    WindowTitles titles;
    std::string_view add;
    std::string_view edit;
    std::string_view remove;
    std::string_view exportList;
    std::string_view importList;
    std::string_view select;
    std::string_view search;
    std::string_view record;
    std::string_view removeTarget;   ///< the question before the shortcut of Target is deleted
    std::string_view importQuestion; ///< the question before a list is replaced

    friend std::ostream& operator<<(std::ostream& stream, const WindowWords& words) {
        return stream << words.language;
    }
};

inline constexpr WindowWords japaneseWords{
    .language = "ja",
    .titles = japaneseTitles,
    .add = "+ ショートカット追加",
    .edit = "編集",
    .remove = "削除",
    .exportList = "エクスポート",
    .importList = "インポート",
    .select = "アプリを選択...",
    .search = "検索",
    .record = "記録",
    .removeTarget = "「Target」のショートカットを削除しますか？",
    .importQuestion = "ショートカットをインポートしますか？"};

inline constexpr WindowWords englishWords{.language = "en",
                                          .titles = englishTitles,
                                          .add = "+ Add Shortcut",
                                          .edit = "Edit",
                                          .remove = "Delete",
                                          .exportList = "Export",
                                          .importList = "Import",
                                          .select = "Select App...",
                                          .search = "Search",
                                          .record = "Record",
                                          .removeTarget = "Delete shortcut for \"Target\"?",
                                          .importQuestion = "Import Shortcuts?"};

/// Somebody at the utility's windows who has a keyboard alone, and is told as by a screen
/// reader what has the keys: desktops say that of a window a moment before the toolkit knows.
/// Throws std::runtime_error if what has to come does not.
class KeyboardUserOnWayland : public WindowOnWaylandStory {
public:
    explicit KeyboardUserOnWayland(const WindowWords& spoken = japaneseWords,
                                   std::unique_ptr<WaylandStory> place = makeStory());

    const WindowWords words;
    ScreenReader reader{story.session().bus().address()};

    /// Starts the program a second time; returns its window once that has the keys.
    Accessible openManagement();

    /// The window of ours that is named so, once it has the keys.
    Accessible managementComes();
    Accessible dialogComes(std::string_view title);

    /// The question with these words, once it has the keys.
    Accessible questionComes(std::string_view message);

    /// The part of a window that has the keys; absent if it is in another window.
    std::optional<Accessible> focusedIn(const Accessible& window);

    /// Strikes the key and waits until another part of the window has the keys; returns it.
    Accessible moveOn(const Accessible& window, const std::string& key = "TAB");

    /// Moves to the button by the Tab key, unless it has the keys already, and presses it.
    void press(const Accessible& window, std::string_view button);

    /// In an editor: chooses the application by the beginning of its name.
    void choose(const Accessible& editor, const Application& application);

    /// Opens the editor of the first card and begins to record there.
    void beginToRecord();

    /// In an editor with both steps: records the combination.
    void record(const Accessible& editor, const Combination& combination);

    /// Presses a key that closes the window with this title, and waits until it has.
    void strikeAndLeave(std::string_view title, const std::string& key);

    /// Answers a file panel by typing the path.
    void enterPath(const Accessible& panel, const std::filesystem::path& file);

    /// Whether, after some waiting, the file has this list of shortcuts, their identifiers aside.
    testing::AssertionResult listBecomes(const nlohmann::json& expected);
    static nlohmann::json shortcut(const Combination& combination, const Application& application);

private:
    void beginToRecordIn(std::string_view title);
    Accessible comes(std::string_view title, std::string_view role, std::string_view name);
    void require(const std::function<bool()>& condition, const std::string& what);
    static void require(const testing::AssertionResult& result);
};

/// The shortcuts of a file without their identifiers; an empty list if there is no file.
nlohmann::json shortcutsIn(const std::filesystem::path& file);

} // namespace hollowfernpike::test
