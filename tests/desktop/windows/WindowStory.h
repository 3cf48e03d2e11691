#pragma once

#include "desktop/Story.h"
#include "desktop/windows/Screen.h"
#include "platform/qt/Pointer.h"

#include <functional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

/// What the utility calls its windows, in the language that it speaks in a new home.
namespace title {

inline constexpr std::string_view management = "Hollowfernpike - ショートカット管理";
inline constexpr std::string_view adding = "ショートカット追加";
inline constexpr std::string_view editing = "ショートカット編集";
inline constexpr std::string_view applications = "アプリを選択";
inline constexpr std::string_view alert = "Hollowfernpike";
inline constexpr std::string_view exporting = "ショートカットをエクスポート";
inline constexpr std::string_view importing = "ショートカットをインポート";

} // namespace title

/// Somebody with keyboard and mouse at the windows of the utility, which has started in an empty
/// home. Everything that was to be seen and does not come throws std::runtime_error.
class WindowStory : public Story {
public:
    WindowStory();

    Application& front;
    Screen screen{desktop.display()};
    Pointer mouse{desktop.display()};

    /// Starts the utility on the files as they are.
    void start();

    /// Opens the management window as a second start of the program does, and waits until it has
    /// the keys.
    xcb_window_t openManagement();

    /// The window of this title, other than `before`, once it has the keys.
    xcb_window_t comes(std::string_view title, xcb_window_t before = XCB_NONE);

    /// Waits until the window has left the screen.
    void goes(xcb_window_t window);

    /// The controls of the management window, clicked; what they open, once it has the keys.
    xcb_window_t clickAdd();
    xcb_window_t clickEdit(int card);
    xcb_window_t clickDelete(int card);
    xcb_window_t clickExport();
    xcb_window_t clickImport();

    /// In an editor that has the keys: chooses the application by typing its name.
    void choose(xcb_window_t editor, const Application& application);

    /// In an editor with both steps: starts recording and waits until the recorder says so.
    void startRecording(xcb_window_t editor);

    /// Waits until the recorder no longer says that it records.
    void finishRecording(xcb_window_t editor);

    /// Records the combination.
    void record(xcb_window_t editor, const Combination& combination);

    void clickSave(xcb_window_t editor);

    /// Presses a key that closes the window, and waits until it has.
    void strikeAndLeave(xcb_window_t window, const std::string& key);

    /// Adds a shortcut from the open window to the live combination.
    void add(const Application& application, const Combination& combination);

    /// Answers a file panel by typing the path.
    void enterPath(xcb_window_t panel, const std::filesystem::path& file);

    /// Whether, after some waiting, nobody holds the combination any more.
    testing::AssertionResult isFree(const Combination& combination);

    /// The shortcuts of the file, in order; an empty list if there is no file.
    nlohmann::json list() const;

    /// Waits for the file to hold this list.
    testing::AssertionResult listBecomes(const nlohmann::json& expected);

    /// The record of this shortcut, with the identifier that the file has in this place.
    nlohmann::json record(std::size_t index, const Combination& combination,
                          const Application& application) const;

private:
    /// Clicks into the window once it has the keys: a change of the focus lets go of a button.
    void click(xcb_window_t window, int x, int y);
    bool isInFrontOfAll(xcb_window_t window);

    /// How thick the recorder's border is: 1 while idle, 2 while it records, 0 if it cannot be
    /// seen.
    int recorderBorder(xcb_window_t editor);
    void require(const std::function<bool()>& condition, const std::string& what);

    KeyGrabber prober_{desktop.display()};
    xcb_window_t management_ = XCB_NONE;
};

nlohmann::json contents(const std::filesystem::path& file);

} // namespace hollowfernpike::test
