#pragma once

#include "desktop/Story.h"
#include "desktop/windows/Screen.h"
#include "desktop/windows/WindowTitles.h"
#include "platform/qt/Pointer.h"

#include <functional>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// Somebody with keyboard and mouse at the windows of the utility of a story. Throws
/// std::runtime_error if something that is to be seen does not appear.
class WindowUser {
public:
    /// `scale` is how many pixels of the screen the utility takes for one of its own.
    explicit WindowUser(Story& story, const WindowTitles& windowTitles = japaneseTitles,
                        int scale = 1);

    Screen screen;
    Pointer mouse;
    WindowTitles titles;

    /// Opens the management window as a second start of the program does, or brings it to the front
    /// as a task bar does if it is open, and waits until it has the keys.
    xcb_window_t openManagement();

    /// Waits until the management window, opened by whatever means, has the keys.
    xcb_window_t managementComes();

    /// The window of this title, other than `before`, once it has the keys.
    xcb_window_t comes(std::string_view title, xcb_window_t before = XCB_NONE);

    /// Waits until the window has left the screen.
    void goes(xcb_window_t window);

    /// Clicks these controls of the management window; returns what they open, once it has the
    /// keys.
    xcb_window_t clickAdd();
    xcb_window_t clickEdit(int card);
    xcb_window_t clickDelete(int card);
    xcb_window_t clickExport();
    xcb_window_t clickImport();

    /// Where the mouse has to be for these controls; pixels of the screen.
    struct Point {
        int x = 0;
        int y = 0;
    };
    Point addButton();
    Point editButton(int card);
    Point exportButton();

    /// Waits until the editor has the keys, then opens the panel of applications.
    xcb_window_t openApplications(xcb_window_t editor);

    /// In an editor that has the keys: chooses the application by typing its name.
    void choose(xcb_window_t editor, std::string_view application);

    /// Waits until an editor with both steps has painted them. Its request for the front, which it
    /// makes when it is new, has then reached the window manager.
    void showsRecorder(xcb_window_t editor);

    /// In an editor with both steps: starts recording and waits until the recorder says so.
    void startRecording(xcb_window_t editor);

    /// Waits until the recorder no longer says that it records.
    void finishRecording(xcb_window_t editor);

    /// Records the combination.
    void record(xcb_window_t editor, const Combination& combination);

    void clickSave(xcb_window_t editor);

    /// Presses a key that closes the window, and waits until it has.
    void strikeAndLeave(xcb_window_t window, const std::string& key);

    /// Types the path into a file panel, over what is there, and accepts it. Waits until the panel
    /// has given the keys to a question of its own, or has gone.
    void acceptPath(xcb_window_t panel, const std::filesystem::path& file);

    /// Answers a file panel by typing the path.
    void enterPath(xcb_window_t panel, const std::filesystem::path& file);

    /// Waits for the condition; `what` tells what is wrong if it does not come true.
    void require(const std::function<bool()>& condition, const std::string& what);

private:
    /// A point of a window, in pixels of the utility; from its right or lower edge if negative.
    Point pointOf(xcb_window_t window, int x, int y);

    /// Clicks into the window once it has the keys, because a change of the focus lets go of a
    /// button. `place` is asked only then, because the window may move until it has them.
    void click(xcb_window_t window, const std::function<Point()>& place);
    bool isShown(xcb_window_t window);
    void waitForKeys(xcb_window_t window);
    int heightOf(xcb_window_t window);

    /// How thick the recorder's border is: 1 while idle, 2 while it records, 0 if it cannot be
    /// seen.
    int recorderBorder(xcb_window_t editor);

    Story& story_;
    int scale_;
    xcb_window_t management_ = XCB_NONE;
};

} // namespace hollowfernpike::test
