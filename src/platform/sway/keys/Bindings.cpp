#include "platform/sway/keys/Bindings.h"

#include "platform/freedesktop/Logging.h"
#include "platform/sway/ipc/Json.h"
#include "platform/sway/keys/BindingText.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace hollowfernpike::sway {

namespace {

/// sway inserts each binding into a sorted list and serves nobody meanwhile, so it gets them in
/// portions: 100 take it 1 ms.
constexpr std::size_t portion = 100;

constexpr const char* defaultMode = "default";

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char letter : text) {
        result += letter == '"' || letter == '\\' ? "\\" : "";
        result += letter;
    }
    return result + '"';
}

} // namespace

Bindings::Bindings(IpcClient& ipc) : ipc_(ipc), record_(ipc.path()), doubtful_(record_.read()) {}

bool Bindings::bind(const std::vector<platform::KeyCombination>& combinations,
                    const wayland::Keymap* keymap) {
    if (!configuration_.read(ipc_)) {
        return false;
    }
    refused_ = refusedAmong(combinations, keymap);
    Commands wanted;
    for (const auto& combination : combinations) {
        if (std::ranges::find(refused_, combination) == refused_.end()) {
            for (const auto& keys : keysOf(combination)) {
                wanted[keys] = commandOf(combination);
            }
        }
    }
    return change(wanted);
}

bool Bindings::unbind() {
    refused_.clear();
    return change({});
}

void Bindings::onReload() {
    bound_.clear();
    doubtful_.clear();
    record_.write({});
}

void Bindings::onDoubt() {
    doubtful_.merge(bound_);
    bound_.clear();
}

// While sway is at it, the old as well as the new ones may be bound.
bool Bindings::change(const Commands& wanted) {
    const auto todo = steps(wanted);
    if (todo.empty()) {
        return true;
    }
    onDoubt();
    for (const auto& [keys, command] : wanted) {
        doubtful_.insert(keys);
    }
    record_.write(doubtful_);
    if (!execute(todo)) {
        return false;
    }
    doubtful_.clear();
    for (const auto& [keys, command] : wanted) {
        bound_.insert(keys);
    }
    record_.write(bound_);
    return true;
}

// Of the keys in doubt, those that the user binds now are the user's: sway has only one binding for
// a key code.
std::vector<std::string> Bindings::steps(const Commands& wanted) const {
    std::vector<std::string> steps;
    for (const auto* const known : {&bound_, &doubtful_}) {
        for (const auto& keys : *known) {
            if (!wanted.contains(keys) && !configuration_.bindsByCode(keys)) {
                steps.push_back("unbindcode " + keys);
            }
        }
    }
    for (const auto& [keys, command] : wanted) {
        if (!bound_.contains(keys)) {
            auto& text = steps.emplace_back("bindcode --no-warn --no-repeat ");
            text.append(keys).append(" ").append(command);
        }
    }
    return steps;
}

std::vector<platform::KeyCombination>
Bindings::refusedAmong(const std::vector<platform::KeyCombination>& combinations,
                       const wayland::Keymap* keymap) const {
    std::vector<platform::KeyCombination> refused;
    std::ranges::copy_if(combinations, std::back_inserter(refused), [&](const auto& combination) {
        return configuration_.binds(combination, keymap);
    });
    return refused;
}

// sway changes the bindings of the mode that it is in. If the user is in another one at this
// moment, they go to the default mode and back.
bool Bindings::execute(const std::vector<std::string>& steps) {
    const auto state = ipc_.ask(IpcKind::getBindingState);
    if (!state) {
        return false;
    }
    const auto mode = textMember(parse(*state), "name");
    const bool isElsewhere = !mode.empty() && mode != defaultMode;
    for (std::size_t begin = 0; begin < steps.size(); begin += portion) {
        std::string text = isElsewhere ? "mode \"default\"; " : "";
        const auto end = std::min(begin + portion, steps.size());
        for (auto index = begin; index < end; ++index) {
            text += steps[index] + "; ";
        }
        text += isElsewhere ? "mode " + quoted(mode) : "";
        if (!ipc_.ask(IpcKind::runCommand, text)) {
            return false;
        }
    }
    return true;
}

} // namespace hollowfernpike::sway
