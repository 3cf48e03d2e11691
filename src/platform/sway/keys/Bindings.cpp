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

std::vector<std::string> list(const std::map<std::string, std::string>& wanted) {
    std::vector<std::string> keys;
    std::ranges::transform(wanted, std::back_inserter(keys),
                           [](const auto& each) { return each.first; });
    return keys;
}

} // namespace

Bindings::Bindings(IpcClient& ipc) : ipc_(ipc), record_(ipc.path()) {
    const auto left = record_.read();
    bound_.insert(left.begin(), left.end());
}

bool Bindings::bind(const std::vector<platform::KeyCombination>& combinations,
                    const wayland::Keymap* keymap) {
    if (!configuration_.read(ipc_)) {
        return false;
    }
    refused_ = refusedAmong(combinations, keymap);
    std::map<std::string, std::string> wanted;
    for (const auto& combination : combinations) {
        if (std::ranges::find(refused_, combination) != refused_.end()) {
            continue;
        }
        for (const auto& keys : keysOf(combination)) {
            wanted[keys] = commandOf(combination);
        }
    }
    const auto commands = changes(wanted);
    if (commands.empty()) {
        return true;
    }
    const auto keys = list(wanted);
    // While sway is at it, the one as well as the other may be bound.
    bound_.insert(keys.begin(), keys.end());
    record_.write({bound_.begin(), bound_.end()});
    if (!execute(commands)) {
        return false;
    }
    bound_ = {keys.begin(), keys.end()};
    record_.write(keys);
    return true;
}

std::vector<std::string> Bindings::changes(const std::map<std::string, std::string>& wanted) const {
    std::vector<std::string> commands;
    for (const auto& keys : bound_) {
        if (!wanted.contains(keys)) {
            commands.push_back("unbindcode " + keys);
        }
    }
    for (const auto& [keys, command] : wanted) {
        if (!bound_.contains(keys)) {
            auto& text = commands.emplace_back("bindcode --no-warn --no-repeat ");
            text.append(keys).append(" ").append(command);
        }
    }
    return commands;
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
// moment, the commands go to the default mode and back.
bool Bindings::execute(const std::vector<std::string>& commands) {
    const auto state = ipc_.ask(IpcKind::getBindingState);
    if (!state) {
        return false;
    }
    const auto mode = textMember(parse(*state), "name");
    const bool isElsewhere = !mode.empty() && mode != defaultMode;
    for (std::size_t begin = 0; begin < commands.size(); begin += portion) {
        std::string text = isElsewhere ? "mode \"default\"; " : "";
        const auto end = std::min(begin + portion, commands.size());
        for (auto index = begin; index < end; ++index) {
            text += commands[index] + "; ";
        }
        text += isElsewhere ? "mode " + quoted(mode) : "";
        if (!ipc_.ask(IpcKind::runCommand, text)) {
            return false;
        }
    }
    return true;
}

} // namespace hollowfernpike::sway
