#include "show/Show.h"

#include "show/Camera.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace hollowfernpike::show {

namespace {

using test::waitUntil;
using Clock = std::chrono::steady_clock;

constexpr int roundTrips = 3;

std::string contents(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream{file}.rdbuf();
    return text.str();
}

} // namespace

Show::Show(std::filesystem::path pictures)
    : pictures_(std::move(pictures)), stage_({terminal_, editor_}) {
    std::filesystem::create_directories(pictures_);
}

bool Show::run() {
    narrator_.heading("A private desktop " + stage_.desktop.display() +
                      ": X server, window manager, session bus and home directory of its own");
    start();
    launch(terminal_);
    picture("1-xterm-launched");
    launch(editor_);
    type(editor_, "Control Option X brings the terminal forward,\nControl Option E the editor.\n");
    picture("2-mousepad-launched");
    for (int round = 0; round < roundTrips; ++round) {
        bringForward(terminal_);
        bringForward(editor_);
    }
    typeIntoTerminal();
    picture("3-typed-into-xterm");
    restore(terminal_);
    restore(editor_);
    picture("4-mousepad-restored");
    end();
    return narrator_.everythingWasTrue();
}

void Show::start() {
    stage_.keyboard.strike({"RTRN"}); // from now on this is the keyboard in use
    const auto begin = Clock::now();
    stage_.startUtility();
    const bool areHeld = waitUntil([this] { return stage_.combinationsAreHeld(); });
    narrator_.fact("the utility holds " + terminal_.keys + " and " + editor_.keys + " after " +
                       format(Clock::now() - begin),
                   areHeld);
}

void Show::launch(const Binding& binding) {
    const auto taken = strikeUntilInFront(binding);
    windows_[binding.windowClass] = stage_.pager.activeWindow();
    narrator_.fact(binding.keys + ": " + binding.application +
                   " launched, its window in front after " + format(taken));
}

void Show::bringForward(const Binding& binding) {
    const auto taken = strikeUntilInFront(binding);
    narrator_.fact(binding.keys + ": " + binding.application + " brought to the front in " +
                       format(taken),
                   stage_.pager.activeWindow() == windows_[binding.windowClass]);
}

void Show::typeIntoTerminal() {
    const auto file = stage_.desktop.home() / "typed";
    bringForward(terminal_);
    type(terminal_, "cd; tee typed\nunbound keys ");
    bringForward(editor_);
    bringForward(terminal_);
    strikeUntilInFront(terminal_);
    type(terminal_, "reach xterm\n");
    stage_.keyboard.strike({"LCTL", "AC03"});
    const bool isWhole = waitUntil([&] { return contents(file) == "unbound keys reach xterm\n"; });
    narrator_.fact("xterm got all the unbound keys and none of the bound ones", isWhole);
}

void Show::restore(const Binding& binding) {
    const auto window = windows_[binding.windowClass];
    stage_.pager.minimise(window);
    const auto isAway = [&] {
        return stage_.pager.isMinimised(window) && stage_.pager.activeWindow() != window;
    };
    if (!waitUntil(isAway)) {
        throw std::runtime_error(binding.application + " cannot be minimised");
    }
    const auto taken = strikeUntilInFront(binding);
    narrator_.fact(binding.keys + ": " + binding.application +
                       " was minimised, restored to the front in " + format(taken),
                   waitUntil([&] { return !stage_.pager.isMinimised(window); }));
}

void Show::end() {
    const auto windows = stage_.pager.stacking().size();
    const auto begin = Clock::now();
    stage_.utility().signal(SIGTERM);
    const auto status = stage_.utility().wait();
    narrator_.fact("SIGTERM: the utility ended with status 0 after " + format(Clock::now() - begin),
                   status == 0);
    narrator_.fact("both combinations are free again", stage_.combinationsAreFree());
    narrator_.fact("the applications stay", stage_.pager.stacking().size() == windows);
}

Show::Time Show::strikeUntilInFront(const Binding& binding) {
    const auto isWanted = [&](xcb_window_t window) {
        return stage_.pager.classOf(window) == binding.windowClass;
    };
    const bool isThere = isWanted(stage_.pager.activeWindow());
    auto modifiers = binding.combination.keys();
    const auto key = stage_.keyboard.keycode(modifiers.back());
    modifiers.pop_back();
    for (const auto& modifier : modifiers) {
        stage_.keyboard.press(modifier);
    }
    stage_.front.forget();
    const auto begin = Clock::now();
    stage_.keyboard.press(key);
    stage_.keyboard.release(key);
    for (const auto& modifier : modifiers) {
        stage_.keyboard.release(modifier);
    }
    const auto arrival = isThere ? test::FrontWatch::Arrival{.window = XCB_NONE, .time = begin}
                                 : stage_.front.wait(isWanted);
    if (!arrival) {
        throw std::runtime_error(binding.keys + " does not bring " + binding.application +
                                 " to the front");
    }
    return arrival->time - begin;
}

// The editor gives the focus on to a window inside its own.
void Show::type(const Binding& into, const std::string& text) {
    const auto terminal = windows_[terminal_.windowClass];
    const bool intoTerminal = into.windowClass == terminal_.windowClass;
    const auto getsKeys = [&] {
        return (stage_.pager.focusedWindow() == terminal) == intoTerminal;
    };
    if (!waitUntil(getsKeys)) {
        throw std::runtime_error(into.application + " does not get the keys");
    }
    show::type(stage_.keyboard, text);
}

void Show::picture(const std::string& name) {
    save(show::picture(stage_.desktop.display()), pictures_ / (name + ".png"));
}

} // namespace hollowfernpike::show
