#include "platform/sway/keys/UserConfiguration.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/sway/ipc/Json.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <wordexp.h>

namespace hollowfernpike::sway {

namespace {

namespace fs = std::filesystem;
using namespace platform::event_flags;
namespace real = freedesktop::real_modifiers;

/// sway takes the locks off the state of a press before it compares, so a binding that asks for one
/// never fires.
constexpr unsigned locks = real::lock | real::mod2;

constexpr std::array<std::uint16_t, 12> functionKeys{122, 120, 99,  118, 96,  97,
                                                     98,  100, 101, 109, 103, 111};

/// sway lets a binding win over its own switching of terminals.
bool switchesTerminal(const platform::KeyCombination& combination) {
    return (combination.modifierFlags & ~shift) == (control | option) &&
           std::ranges::find(functionKeys, combination.keyCode) != functionKeys.end();
}

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// As sway finds them: relative to the folder of the file with that line, with the wild cards and
/// variables of a shell. sway would run commands, too; we do not.
std::vector<ConfigurationFile> filesNamed(const std::string& pattern, const fs::path& folder) {
    const bool isRelative = pattern.find_first_of("/~$") != 0;
    const auto whole = isRelative ? (folder / pattern).string() : pattern;
    std::vector<ConfigurationFile> files;
    wordexp_t found{};
    if (::wordexp(whole.c_str(), &found, WRDE_NOCMD) != 0) {
        qCWarning(freedesktop::keysLog, "cannot tell which files sway includes by \"%s\"",
                  pattern.c_str());
        return files;
    }
    for (std::size_t index = 0; index < found.we_wordc; ++index) {
        std::error_code failure;
        const auto path = fs::canonical(found.we_wordv[index], failure);
        if (!failure && fs::is_regular_file(path, failure)) {
            files.push_back({.path = path, .text = contents(path)});
        }
    }
    ::wordfree(&found);
    return files;
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
    if ((binding.modifiers & locks) != 0) {
        return false;
    }
    if (const auto* const code = std::get_if<std::uint32_t>(&binding.key)) {
        return *code == keyCode && binding.modifiers == held;
    }
    return keymap != nullptr &&
           keymap->gives(keyCode, held, std::get<std::string>(binding.key), binding.modifiers);
}

} // namespace

bool UserConfiguration::read(IpcClient& ipc) {
    const auto version = ipc.ask(IpcKind::getVersion);
    const auto configuration = ipc.ask(IpcKind::getConfig);
    if (!version || !configuration) {
        return false;
    }
    bindings_ = userBindings({.path = textMember(parse(*version), "loaded_config_file_name"),
                              .text = textMember(parse(*configuration), "config")},
                             filesNamed);
    return true;
}

bool UserConfiguration::binds(const platform::KeyCombination& combination,
                              const wayland::Keymap* keymap) const {
    if (switchesTerminal(combination)) {
        return true;
    }
    const auto held = stateOf(combination);
    const auto evdevCodes = freedesktop::evdevCodesOf(combination.keyCode);
    return std::ranges::any_of(bindings_, [&](const UserBinding& binding) {
        return std::ranges::any_of(evdevCodes, [&](std::uint16_t evdev) {
            return answers(binding, evdev + freedesktop::xkbKeyCodeOffset, held, keymap);
        });
    });
}

bool UserConfiguration::bindsByCode(const std::string& keys) const {
    const auto asked = bindingOfKeys(keys, true);
    return asked && std::ranges::find(bindings_, *asked) != bindings_.end();
}

} // namespace hollowfernpike::sway
