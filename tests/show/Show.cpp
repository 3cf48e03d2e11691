#include "show/Show.h"

#include "show/Camera.h"
#include "show/Typing.h"
#include "support/Files.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <fstream>
#include <stdexcept>

namespace hollowfernpike::show {

namespace {

using test::waitUntil;
using Clock = std::chrono::steady_clock;

constexpr int roundTrips = 3;

constexpr const char* background = "#35506b";

constexpr const char* terminalLook = R"(XTerm*faceName: DejaVu Sans Mono
XTerm*faceSize: 12
XTerm*geometry: 66x20+70+60
XTerm*background: #1d2733
XTerm*foreground: #e6edf3
XTerm*cursorBlink: false
)";

constexpr const char* toolkitLook = R"([Settings]
gtk-font-name=DejaVu Sans 10
gtk-cursor-blink=0
gtk-enable-animations=0
)";

/// Hides the editor's warning to root, who can do no harm here.
constexpr const char* toolkitStyle = R"(window label { opacity: 0; font-size: 0; }
menubar label { opacity: 1; font-size: 10pt; }
)";

} // namespace

Show::Show(std::filesystem::path pictures) : pictures_(std::move(pictures)) {
    std::filesystem::create_directories(pictures_);
    furnish();
    bind(terminal_);
    bind(editor_);
    story_.writeShortcuts();
}

void Show::furnish() {
    story_.desktop.showOfMachine("icons/hicolor");
    const auto home = story_.desktop.home();
    test::writeFile(home / ".Xdefaults", terminalLook);
    test::writeFile(home / ".config/gtk-3.0/settings.ini", toolkitLook);
    test::writeFile(home / ".config/gtk-3.0/gtk.css", toolkitStyle);
    story_.run({"xsetroot", "-solid", background});
}

void Show::bind(const Binding& binding) {
    story_.desktop.showOfMachine("applications" / binding.entry.filename());
    if (!std::filesystem::exists(binding.entry)) {
        throw std::runtime_error(binding.application + " is not installed");
    }
    const auto name = binding.entry.stem().string();
    story_.bind(binding.combination,
                test::ShortcutTarget{.path = binding.entry, .name = name, .identifier = name});
}

bool Show::run() {
    narrator_.heading("A private desktop " + story_.desktop.display() +
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
    story_.keyboard.strike({"RTRN"}); // from now on this is the keyboard in use
    const auto begin = Clock::now();
    story_.launchUtility(
        {{"SHELL", "/bin/sh"}, {"PS1", "$ "}, {"ENV", std::nullopt}, {"LC_ALL", "C.UTF-8"}});
    const bool areHeld{story_.areLive()};
    narrator_.fact("the utility holds " + terminal_.keys + " and " + editor_.keys + " after " +
                       format(Clock::now() - begin),
                   areHeld);
}

void Show::launch(const Binding& binding) {
    const auto taken = strikeUntilInFront(binding);
    windows_[binding.windowClass] = story_.pager.activeWindow();
    narrator_.fact(binding.keys + ": " + binding.application +
                   " launched, its window in front after " + format(taken));
}

void Show::bringForward(const Binding& binding) {
    const auto taken = strikeUntilInFront(binding);
    narrator_.fact(binding.keys + ": " + binding.application + " brought to the front in " +
                       format(taken),
                   story_.pager.activeWindow() == windows_[binding.windowClass]);
}

void Show::typeIntoTerminal() {
    const auto file = story_.desktop.home() / "typed";
    bringForward(terminal_);
    type(terminal_, "cd; tee typed\nunbound keys ");
    bringForward(editor_);
    bringForward(terminal_);
    strikeUntilInFront(terminal_);
    type(terminal_, "reach xterm\n");
    story_.keyboard.strike({"LCTL", "AC03"});
    const bool isWhole =
        waitUntil([&] { return test::contentsOf(file) == "unbound keys reach xterm\n"; });
    narrator_.fact("xterm got all the unbound keys and none of the bound ones", isWhole);
}

void Show::restore(const Binding& binding) {
    const auto window = windows_[binding.windowClass];
    story_.pager.minimise(window);
    const auto isAway = [&] {
        return story_.pager.isMinimised(window) && story_.pager.activeWindow() != window;
    };
    if (!waitUntil(isAway)) {
        throw std::runtime_error(binding.application + " cannot be minimised");
    }
    const auto taken = strikeUntilInFront(binding);
    narrator_.fact(binding.keys + ": " + binding.application +
                       " was minimised, restored to the front in " + format(taken),
                   waitUntil([&] { return !story_.pager.isMinimised(window); }));
}

void Show::end() {
    const auto windows = story_.pager.stacking().size();
    const auto begin = Clock::now();
    story_.utility().signal(SIGTERM);
    const auto status = story_.utility().wait();
    narrator_.fact("SIGTERM: the utility ended with status 0 after " + format(Clock::now() - begin),
                   status == 0);
    narrator_.fact("both combinations are free again",
                   story_.isFree(terminal_.combination) && story_.isFree(editor_.combination));
    narrator_.fact("the applications stay", story_.pager.stacking().size() == windows);
}

Show::Time Show::strikeUntilInFront(const Binding& binding) {
    const auto isWanted = [&](xcb_window_t window) {
        return story_.pager.classOf(window) == binding.windowClass;
    };
    const bool isThere = isWanted(story_.pager.activeWindow());
    auto modifiers = binding.combination.keys();
    const auto key = story_.keyboard.keycode(modifiers.back());
    modifiers.pop_back();
    for (const auto& modifier : modifiers) {
        story_.keyboard.press(modifier);
    }
    front_.forget();
    const auto begin = Clock::now();
    story_.keyboard.press(key);
    story_.keyboard.release(key);
    for (const auto& modifier : modifiers) {
        story_.keyboard.release(modifier);
    }
    const auto arrival = isThere ? test::FrontWatch::Arrival{.window = XCB_NONE, .time = begin}
                                 : front_.wait(isWanted);
    if (!arrival) {
        throw std::runtime_error(binding.keys + " does not bring " + binding.application +
                                 " to the front");
    }
    return arrival->time - begin;
}

// The editor passes the focus on to a window within its own.
void Show::type(const Binding& into, const std::string& text) {
    const auto terminal = windows_[terminal_.windowClass];
    const bool intoTerminal = into.windowClass == terminal_.windowClass;
    const auto getsKeys = [&] {
        return (story_.pager.focusedWindow() == terminal) == intoTerminal;
    };
    if (!waitUntil(getsKeys)) {
        throw std::runtime_error(into.application + " does not get the keys");
    }
    show::type(story_.keyboard, text);
}

void Show::picture(const std::string& name) {
    save(show::picture(story_.desktop.display()), pictures_ / (name + ".png"));
}

} // namespace hollowfernpike::show
