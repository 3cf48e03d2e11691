#include "platform/x11/windows/WindowQueries.h"

#include "platform/x11/server/Properties.h"
#include "platform/x11/windows/Snapshot.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include <unistd.h>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t mostTextWords = 256;
constexpr std::uint32_t mostAtoms = 64;
constexpr std::int32_t layerBelow = -1;
constexpr std::int32_t layerAbove = 1;

bool isThisMachine(std::string_view machine) {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 && machine == name.data();
}

std::string withoutEnd(std::string text) {
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

template <std::size_t count>
bool isAmong(const std::array<xcb_atom_t, count>& types, xcb_atom_t type) {
    return std::ranges::find(types, type) != types.end();
}

std::optional<std::int32_t> layerOfType(const Atoms& atoms, xcb_atom_t type) {
    const std::array ordinary{atoms.typeNormal, atoms.typeDialog, atoms.typeUtility,
                              atoms.typeToolbar};
    const std::array above{atoms.typeDock,         atoms.typeSplash,    atoms.typeMenu,
                           atoms.typeDropdownMenu, atoms.typePopupMenu, atoms.typeTooltip,
                           atoms.typeNotification, atoms.typeCombo,     atoms.typeDragIcon};
    if (isAmong(ordinary, type)) {
        return ordinaryLayer;
    }
    if (isAmong(above, type)) {
        return layerAbove;
    }
    return type == atoms.typeDesktop ? std::optional(layerBelow) : std::nullopt;
}

/// The layer of a window from its `_NET_WM_WINDOW_TYPE`, which lists types, best first; the first
/// that we know counts. A window that names none is a normal one, or a dialog if it is transient:
/// both are ordinary.
std::int32_t layerOf(const Atoms& atoms, std::span<const xcb_atom_t> types) {
    for (const auto type : types) {
        if (const auto layer = layerOfType(atoms, type)) {
            return *layer;
        }
    }
    return ordinaryLayer;
}

} // namespace

WindowStateQuery::WindowStateQuery(const Connection& connection, const Atoms& atoms,
                                   const ClientProcesses& processes,
                                   std::span<const xcb_window_t> windows)
    : connection_(connection), atoms_(atoms), processes_(processes) {
    questions_.reserve(windows.size());
    for (const auto window : windows) {
        questions_.push_back({
            .window = window,
            .state = askProperty(connection, window, atoms.state, XCB_ATOM_ATOM, mostAtoms),
            .desktop = askProperty(connection, window, atoms.desktop, XCB_ATOM_CARDINAL, 1),
            .windowClass =
                askProperty(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_ANY, mostTextWords),
        });
    }
    processQuestion_ = processes.ask(windows);
}

std::unordered_map<xcb_window_t, WindowState> WindowStateQuery::take() {
    std::unordered_map<xcb_window_t, WindowState> states;
    for (const auto& question : questions_) {
        if (auto state = takeOne(question)) {
            states.emplace(question.window, std::move(*state));
        }
    }
    const auto processes = processes_.take(processQuestion_);
    for (auto& [window, state] : states) {
        const auto process = processes.find(processes_.clientOf(window));
        if (process != processes.end()) {
            state.clientProcess = process->second;
        }
    }
    return states;
}

std::optional<WindowState> WindowStateQuery::takeOne(const Question& question) const {
    const auto state = takeProperty(connection_, question.state);
    const auto desktop = takeProperty(connection_, question.desktop);
    const auto windowClass = takeProperty(connection_, question.windowClass);
    if (!state || !desktop || !windowClass) {
        return std::nullopt;
    }
    const auto flags = numbersOf(state);
    return WindowState{
        .isHidden = std::ranges::find(flags, atoms_.stateHidden) != flags.end(),
        .desktop = numberOf(desktop),
        .clientProcess = std::nullopt,
        .windowClass = textOf(windowClass),
    };
}

WindowTraitsQuery::WindowTraitsQuery(const Connection& connection, const Atoms& atoms,
                                     std::span<const xcb_window_t> windows)
    : connection_(connection), atoms_(atoms) {
    const auto askText = [&](xcb_window_t window, xcb_atom_t property) {
        return askProperty(connection, window, property, XCB_ATOM_ANY, mostTextWords);
    };
    questions_.reserve(windows.size());
    for (const auto window : windows) {
        questions_.push_back({
            .window = window,
            .type = askProperty(connection, window, atoms.type, XCB_ATOM_ATOM, mostAtoms),
            .pid = askProperty(connection, window, atoms.pid, XCB_ATOM_CARDINAL, 1),
            .machine = askText(window, XCB_ATOM_WM_CLIENT_MACHINE),
            .gtkApplicationId = askText(window, atoms.gtkApplicationId),
            .kdeDesktopFile = askText(window, atoms.kdeDesktopFile),
            .bamfDesktopFile = askText(window, atoms.bamfDesktopFile),
        });
    }
}

std::unordered_map<xcb_window_t, WindowTraits> WindowTraitsQuery::take() {
    std::unordered_map<xcb_window_t, WindowTraits> traits;
    for (const auto& question : questions_) {
        traits.emplace(question.window, takeOne(question));
    }
    return traits;
}

WindowTraits WindowTraitsQuery::takeOne(const Question& question) const {
    const auto take = [this](auto cookie) { return takeProperty(connection_, cookie); };
    const auto takeText = [&take](auto cookie) { return withoutEnd(textOf(take(cookie))); };

    WindowTraits traits;
    traits.layer = layerOf(atoms_, numbersOf(take(question.type)));
    const auto pid = numberOf(take(question.pid)).value_or(0);
    const auto machine = takeText(question.machine);
    if (pid > 0 && pid <= std::numeric_limits<std::int32_t>::max() && isThisMachine(machine)) {
        traits.statedProcess = static_cast<std::int32_t>(pid);
    }
    traits.gtkApplicationId = takeText(question.gtkApplicationId);
    traits.desktopFile = takeText(question.kdeDesktopFile);
    const auto bamfDesktopFile = takeText(question.bamfDesktopFile);
    if (traits.desktopFile.empty()) {
        traits.desktopFile = bamfDesktopFile;
    }
    return traits;
}

platform::WindowFacts factsOf(const WindowState& state, const WindowTraits& traits) {
    const auto instanceName = withoutEnd(state.windowClass);
    const auto classStart = std::min(instanceName.size() + 1, state.windowClass.size());
    return {
        .process = state.clientProcess ? state.clientProcess : traits.statedProcess,
        .instanceName = instanceName,
        .className = withoutEnd(state.windowClass.substr(classStart)),
        .gtkApplicationId = traits.gtkApplicationId,
        .desktopFile = traits.desktopFile,
        .sandboxApplicationId = {},
    };
}

} // namespace hollowfernpike::x11
