#include "desktop/windows/WindowStory.h"

#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

using nlohmann::json;

constexpr auto patience = 20s;

constexpr int headerMiddle = 26;
constexpr int heightOfStep1 = 200;
constexpr int heightOfBothSteps = 280;

int middleOfCard(int card) {
    constexpr int firstMiddle = 52 + 8 + 26;
    constexpr int step = 52 + 8;
    return firstMiddle + card * step;
}

} // namespace

WindowStory::WindowStory() : front(open("Front")) {}

void WindowStory::start() {
    launchUtility();
    // The toolkit's connection and the one for the keys: by then it is the one that runs.
    require([this] { return pager.clients(utility().pid()) > 1; }, "the utility does not come");
}

xcb_window_t WindowStory::openManagement() {
    run({HFP_PROGRAM});
    management_ = comes(title::management);
    return management_;
}

xcb_window_t WindowStory::comes(std::string_view title, xcb_window_t before) {
    xcb_window_t window = XCB_NONE;
    require(
        [&] {
            window = pager.activeWindow();
            return window != before && pager.titleOf(window) == title &&
                   pager.focusedWindow() == window;
        },
        std::string(title) + " does not come");
    return window;
}

void WindowStory::goes(xcb_window_t window) {
    require(
        [&] {
            const auto shown = pager.stacking();
            return std::ranges::find(shown, window) == shown.end();
        },
        pager.titleOf(window) + " does not go");
}

xcb_window_t WindowStory::clickAdd() {
    click(management_, screen.placeOf(management_).width - 40, headerMiddle);
    return comes(title::adding);
}

xcb_window_t WindowStory::clickEdit(int card) {
    click(management_, screen.placeOf(management_).width - 74, middleOfCard(card));
    return comes(title::editing);
}

xcb_window_t WindowStory::clickDelete(int card) {
    click(management_, screen.placeOf(management_).width - 42, middleOfCard(card));
    return comes(title::alert);
}

xcb_window_t WindowStory::clickExport() {
    click(management_, 30, headerMiddle);
    return comes(title::exporting);
}

xcb_window_t WindowStory::clickImport() {
    click(management_, 66, headerMiddle);
    return comes(title::importing);
}

void WindowStory::choose(xcb_window_t editor, const Application& application) {
    keyboard.strike({"SPCE"});
    const auto panel = comes(title::applications);
    show::type(keyboard, application.name());
    strikeAndLeave(panel, "RTRN");
    require([&] { return screen.placeOf(editor).height == heightOfBothSteps; },
            "the second step does not show");
}

void WindowStory::startRecording(xcb_window_t editor) {
    require([&] { return isInFrontOfAll(editor) && recorderBorder(editor) == 1; },
            "the recorder does not show");
    for (const char* key : {"TAB", "TAB", "SPCE"}) { // past the recorder to its button
        keyboard.strike({key});
    }
    require([&] { return recorderBorder(editor) == 2; }, "the recorder does not record");
}

void WindowStory::finishRecording(xcb_window_t editor) {
    require([&] { return recorderBorder(editor) == 1; }, "the recorder goes on recording");
}

void WindowStory::record(xcb_window_t editor, const Combination& combination) {
    startRecording(editor);
    strike(combination);
    finishRecording(editor);
}

void WindowStory::clickSave(xcb_window_t editor) {
    const auto place = screen.placeOf(editor);
    click(editor, place.width - 40, place.height - 28);
    goes(editor);
}

void WindowStory::strikeAndLeave(xcb_window_t window, const std::string& key) {
    if (const auto active = isActive(window); !active) {
        throw std::runtime_error(active.message());
    }
    keyboard.strike({key});
    goes(window);
}

void WindowStory::add(const Application& application, const Combination& combination) {
    const auto editor = clickAdd();
    choose(editor, application);
    record(editor, combination);
    clickSave(editor);
    if (const auto live = isLive(grabOf(combination)); !live) {
        throw std::runtime_error(live.message());
    }
}

void WindowStory::enterPath(xcb_window_t panel, const std::filesystem::path& file) {
    keyboard.strike({"LCTL", "AC01"});
    show::type(keyboard, file.string());
    strikeAndLeave(panel, "RTRN");
}

testing::AssertionResult WindowStory::isFree(const Combination& combination) {
    if (waitUntil([&] { return !prober_.areTaken({grabOf(combination)}); }, patience)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << combination.keyName() << " is still taken";
}

json WindowStory::list() const {
    return contents(shortcutsFile());
}

testing::AssertionResult WindowStory::listBecomes(const json& expected) {
    if (waitUntil([&] { return list() == expected; }, patience)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << list().dump(2) << "\nis not\n" << expected.dump(2);
}

json WindowStory::record(std::size_t index, const Combination& combination,
                         const Application& application) const {
    const auto written = list();
    return {{"id", index < written.size() ? written[index]["id"] : json{}},
            {"keyCode", combination.keyCode},
            {"modifierFlags", combination.modifierFlags},
            {"appPath", application.entry().string()},
            {"appName", application.name()},
            {"appBundleIdentifier", application.identifier()}};
}

void WindowStory::click(xcb_window_t window, int x, int y) {
    require([&] { return isInFrontOfAll(window); }, pager.titleOf(window) + " is not in front");
    const auto place = screen.placeOf(window);
    mouse.click(place.x + x, place.y + y);
}

// What lies longer in these columns is left of a window that has just gone.
int WindowStory::recorderBorder(xcb_window_t editor) {
    constexpr int left = 20;
    constexpr int leastHeight = 20; // the straight part, between the round corners
    constexpr int mostHeight = 36;
    const auto outside = screen.column(editor, left - 2);
    const auto outer = screen.column(editor, left);
    const auto inner = screen.column(editor, left + 1);
    const auto rows = std::min({outside.size(), outer.size(), inner.size()});
    int last = 0;
    int height = 0;
    for (std::size_t row = heightOfStep1 / 2; row < rows; ++row, ++height) {
        const int width = outer[row] == outside[row] ? 0 : inner[row] == outer[row] ? 2 : 1;
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

bool WindowStory::isInFrontOfAll(xcb_window_t window) {
    return pager.activeWindow() == window && pager.focusedWindow() == window;
}

void WindowStory::require(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition, patience)) {
        throw std::runtime_error(what + "; in front: " + pager.titleOf(pager.activeWindow()) +
                                 '\n' + utility().output() + utility().errors());
    }
}

json contents(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return stream ? json::parse(stream) : json::array();
}

} // namespace hollowfernpike::test
