#include "platform/sway/keys/UserConfiguration.h"

#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/sway/ipc/Json.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include <wordexp.h>

namespace hollowfernpike::sway {

namespace {

namespace fs = std::filesystem;
using namespace platform::event_flags;
namespace real = freedesktop::real_modifiers;

/// Caps Lock and Num Lock do not count for sway.
constexpr unsigned locks = real::lock | real::mod2;

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// As sway finds them: relative to the folder of the main file, with the wild cards and variables
/// of a shell, but without its commands.
std::vector<std::string> filesNamed(const std::string& pattern, const fs::path& folder) {
    const bool isRelative = pattern.find_first_of("/~$") != 0;
    const auto whole = isRelative ? (folder / pattern).string() : pattern;
    std::vector<std::string> texts;
    wordexp_t found{};
    if (::wordexp(whole.c_str(), &found, WRDE_NOCMD) == 0) {
        for (std::size_t index = 0; index < found.we_wordc; ++index) {
            if (fs::is_regular_file(found.we_wordv[index])) {
                texts.push_back(contents(found.we_wordv[index]));
            }
        }
    }
    ::wordfree(&found);
    return texts;
}

freedesktop::ModifierState stateOf(const platform::KeyCombination& combination) {
    unsigned state = 0;
    const auto add = [&](std::uint64_t flag, unsigned modifier) {
        state |= (combination.modifierFlags & flag) != 0 ? modifier : 0;
    };
    add(shift, real::shift);
    add(control, real::control);
    add(option, real::mod1);
    add(command, real::mod4);
    return static_cast<freedesktop::ModifierState>(state);
}

bool answers(const UserBinding& binding, std::uint32_t keyCode, freedesktop::ModifierState held,
             const wayland::Keymap* keymap) {
    const auto wanted = static_cast<freedesktop::ModifierState>(binding.modifiers & ~locks);
    if (const auto* const code = std::get_if<std::uint32_t>(&binding.key)) {
        return *code == keyCode && wanted == held;
    }
    return keymap != nullptr &&
           keymap->gives(keyCode, held, std::get<std::string>(binding.key), wanted);
}

} // namespace

bool UserConfiguration::read(IpcClient& ipc) {
    const auto version = ipc.ask(IpcKind::getVersion);
    const auto configuration = ipc.ask(IpcKind::getConfig);
    if (!version || !configuration) {
        return false;
    }
    const auto folder =
        fs::path(textMember(parse(*version), "loaded_config_file_name")).parent_path();
    bindings_ =
        userBindings(textMember(parse(*configuration), "config"),
                     [&](const std::string& pattern) { return filesNamed(pattern, folder); });
    return true;
}

bool UserConfiguration::binds(const platform::KeyCombination& combination,
                              const wayland::Keymap* keymap) const {
    const auto held = stateOf(combination);
    const auto evdevCodes = freedesktop::evdevCodesOf(combination.keyCode);
    return std::ranges::any_of(bindings_, [&](const UserBinding& binding) {
        return std::ranges::any_of(evdevCodes, [&](std::uint16_t evdev) {
            return answers(binding, evdev + freedesktop::xkbKeyCodeOffset, held, keymap);
        });
    });
}

} // namespace hollowfernpike::sway
