#include "desktop/windows/WindowUser.h"

#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

// In pixels of the utility.
constexpr int headerMiddle = 26;
constexpr int exportMiddle = 30;
constexpr int importMiddle = 66;
constexpr int addMiddle = -40;
constexpr WindowUser::Point selectMiddle{.x = 70, .y = 70};
constexpr WindowUser::Point onRecorder{.x = 60, .y = 154};
constexpr int onEdit = -81; // beside a scroller as well as without one
constexpr int onDelete = -49;
constexpr int heightOfStep1 = 200;
constexpr int heightOfBothSteps = 280;

int middleOfCard(int card) {
    constexpr int firstMiddle = 52 + 8 + 26;
    constexpr int step = 52 + 8;
    return firstMiddle + card * step;
}

} // namespace

WindowUser::WindowUser(Story& story, const WindowTitles& windowTitles, int scale)
    : screen(story.desktop.display()), mouse(story.desktop.display()), titles(windowTitles),
      story_(story), scale_(scale) {}

xcb_window_t WindowUser::openManagement() {
    if (!isShown(management_)) {
        story_.run({HFP_PROGRAM});
        return managementComes();
    }
    // Not by a second start: nothing tells when it has been served.
    if (!story_.bringForward([this] { return std::vector{management_}; })) {
        waitForKeys(management_);
    }
    return management_;
}

xcb_window_t WindowUser::managementComes() {
    management_ = comes(titles.management);
    return management_;
}

xcb_window_t WindowUser::comes(std::string_view title, xcb_window_t before) {
    xcb_window_t window = XCB_NONE;
    require(
        [&] {
            window = story_.pager.activeWindow();
            return window != before && story_.pager.titleOf(window) == title &&
                   story_.pager.focusedWindow() == window;
        },
        std::string(title) + " does not come");
    return window;
}

void WindowUser::goes(xcb_window_t window) {
    require([&] { return !isShown(window); }, story_.pager.titleOf(window) + " does not go");
}

WindowUser::Point WindowUser::addButton() {
    return pointOf(management_, addMiddle, headerMiddle);
}

WindowUser::Point WindowUser::editButton(int card) {
    return pointOf(management_, onEdit, middleOfCard(card));
}

WindowUser::Point WindowUser::exportButton() {
    return pointOf(management_, exportMiddle, headerMiddle);
}

xcb_window_t WindowUser::clickAdd() {
    click(management_, [this] { return addButton(); });
    return comes(titles.adding);
}

xcb_window_t WindowUser::clickEdit(int card) {
    click(management_, [&] { return editButton(card); });
    return comes(titles.editing);
}

xcb_window_t WindowUser::clickDelete(int card) {
    click(management_, [&] { return pointOf(management_, onDelete, middleOfCard(card)); });
    return comes(titles.alert);
}

xcb_window_t WindowUser::clickExport() {
    click(management_, [this] { return exportButton(); });
    return comes(titles.exporting);
}

xcb_window_t WindowUser::clickImport() {
    click(management_, [this] { return pointOf(management_, importMiddle, headerMiddle); });
    return comes(titles.importing);
}

xcb_window_t WindowUser::openApplications(xcb_window_t editor) {
    click(editor, [&] { return pointOf(editor, selectMiddle.x, selectMiddle.y); });
    return comes(titles.applications);
}

void WindowUser::choose(xcb_window_t editor, std::string_view application) {
    const auto panel = openApplications(editor);
    show::type(story_.keyboard, application);
    strikeAndLeave(panel, "RTRN");
    require([&] { return heightOf(editor) == heightOfBothSteps; }, "the second step does not show");
}

void WindowUser::showsRecorder(xcb_window_t editor) {
    require([&] { return recorderBorder(editor) == 1; }, "the recorder does not show");
}

void WindowUser::startRecording(xcb_window_t editor) {
    waitForKeys(editor);
    showsRecorder(editor);
    click(editor, [&] { return pointOf(editor, onRecorder.x, onRecorder.y); });
    require([&] { return recorderBorder(editor) == 2; }, "the recorder does not record");
}

void WindowUser::finishRecording(xcb_window_t editor) {
    require([&] { return recorderBorder(editor) == 1; }, "the recorder goes on recording");
}

void WindowUser::record(xcb_window_t editor, const Combination& combination) {
    startRecording(editor);
    story_.strike(combination);
    finishRecording(editor);
}

void WindowUser::clickSave(xcb_window_t editor) {
    click(editor, [&] { return pointOf(editor, -40, -28); });
    goes(editor);
}

void WindowUser::strikeAndLeave(xcb_window_t window, const std::string& key) {
    waitForKeys(window);
    story_.keyboard.strike({key});
    goes(window);
}

// Return is struck repeatedly: a list of completions that is open by then takes the first press.
void WindowUser::acceptPath(xcb_window_t panel, const std::filesystem::path& file) {
    story_.keyboard.strike({"LCTL", "AC01"});
    show::type(story_.keyboard, file.string());
    const auto isAccepted = [&] {
        story_.keyboard.strike({"RTRN"});
        return waitUntil([&] { return story_.pager.activeWindow() != panel; }, patience / 4);
    };
    require(isAccepted, story_.pager.titleOf(panel) + " does not take the path");
}

void WindowUser::enterPath(xcb_window_t panel, const std::filesystem::path& file) {
    acceptPath(panel, file);
    goes(panel);
}

WindowUser::Point WindowUser::pointOf(xcb_window_t window, int x, int y) {
    const auto place = screen.placeOf(window);
    return {.x = place.x + scale_ * x + (x < 0 ? place.width : 0),
            .y = place.y + scale_ * y + (y < 0 ? place.height : 0)};
}

void WindowUser::click(xcb_window_t window, const std::function<Point()>& place) {
    waitForKeys(window);
    const auto [x, y] = place();
    mouse.click(x, y);
}

void WindowUser::waitForKeys(xcb_window_t window) {
    if (const auto active = story_.isActive(window); !active) {
        throw std::runtime_error(active.message());
    }
}

int WindowUser::heightOf(xcb_window_t window) {
    return screen.placeOf(window).height / scale_;
}

// A longer stretch in these columns is no border but left of a window that has just gone.
int WindowUser::recorderBorder(xcb_window_t editor) {
    constexpr int left = 20;
    const int leastHeight = 20 * scale_; // the straight part, between the round corners
    const int mostHeight = 36 * scale_;
    const auto outside = screen.column(editor, (left - 2) * scale_);
    const auto outer = screen.column(editor, left * scale_);
    const auto inner = screen.column(editor, (left + 1) * scale_);
    const auto rows = std::min({outside.size(), outer.size(), inner.size()});
    int last = 0;
    int height = 0;
    constexpr std::size_t middleOfStep1 = heightOfStep1 / 2;
    for (auto row = middleOfStep1 * static_cast<std::size_t>(scale_); row < rows; ++row, ++height) {
        const int border = inner[row] == outer[row] ? 2 : 1;
        const int width = outer[row] == outside[row] ? 0 : border;
        if (width == last) {
            continue;
        }
        if (last > 0 && height >= leastHeight && height <= mostHeight) {
            return last;
        }
        last = width;
        height = 0;
    }
    return 0;
}

bool WindowUser::isShown(xcb_window_t window) {
    const auto shown = story_.pager.stacking();
    return std::ranges::find(shown, window) != shown.end();
}

void WindowUser::require(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition)) {
        auto message =
            what + "; in front: " + story_.pager.titleOf(story_.pager.activeWindow()) + "; shown:";
        for (const auto window : story_.pager.stacking()) {
            message += " \"" + story_.pager.titleOf(window) + '"';
        }
        throw std::runtime_error(message + '\n' + story_.utilityTells());
    }
}

} // namespace hollowfernpike::test
