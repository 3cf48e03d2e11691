#include "platform/sway/keys/UserBindings.h"

#include "platform/sway/keys/ConfigurationLines.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include <strings.h>

namespace hollowfernpike::sway {

namespace {

using Words = ConfigurationLine;
namespace real = freedesktop::real_modifiers;

constexpr std::pair<const char*, freedesktop::ModifierState> modifierWords[] = {
    {"Shift", real::shift},  {"Lock", real::lock}, {"Control", real::control},
    {"Ctrl", real::control}, {"Mod1", real::mod1}, {"Alt", real::mod1},
    {"Mod2", real::mod2},    {"Mod3", real::mod3}, {"Mod4", real::mod4},
    {"Super", real::mod4},   {"Mod5", real::mod5}};

/// Commands and modifiers may be written in any case.
bool is(const std::string& word, const char* other) {
    return ::strcasecmp(word.c_str(), other) == 0;
}

std::optional<freedesktop::ModifierState> modifierNamed(const std::string& name) {
    const auto* const found = std::ranges::find_if(
        modifierWords, [&](const auto& known) { return is(name, known.first); });
    return found == std::end(modifierWords) ? std::nullopt : std::optional{found->second};
}

std::optional<std::uint32_t> numberIn(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{number}
                                                                    : std::nullopt;
}

std::vector<std::string> partsOf(std::string_view keys) {
    std::vector<std::string> parts;
    while (!keys.empty()) {
        const auto end = std::min(keys.find('+'), keys.size());
        parts.emplace_back(keys.substr(0, end));
        keys.remove_prefix(std::min(end + 1, keys.size()));
    }
    return parts;
}

bool isFlag(const std::string& word) {
    return word.starts_with("--");
}

/// Whether a block begins there whose brace stood on the next line: sway leaves such a line out of
/// the text that it tells.
bool lacksBrace(const Words& words) {
    const auto arguments =
        std::ranges::count_if(words, [](const auto& word) { return !isFlag(word); });
    const bool binds =
        !words.empty() && (is(words.front(), "bindsym") || is(words.front(), "bindcode"));
    const bool isMode = !words.empty() && is(words.front(), "mode");
    return (binds && arguments == 1) || (isMode && arguments == 2);
}

/// A binding and its flags, such as "--release": sway keeps one for the press and one for the
/// release of the same keys.
struct Line {
    UserBinding binding;
    std::set<std::string> flags;

    bool operator==(const Line&) const = default;
};

/// Reads a configuration line by line, as sway does.
class Reader {
public:
    explicit Reader(const IncludedFiles& includedFiles) : includedFiles_(includedFiles) {}

    void read(const ConfigurationFile& file) {
        if (!files_.insert(file.path).second) {
            return; // sway reads each file once
        }
        const auto outer = std::exchange(folder_, file.path.parent_path());
        for (const auto& line : configurationLines(file.text)) {
            readLine(line);
        }
        folder_ = outer;
    }

    std::vector<UserBinding> bindings() const {
        std::vector<UserBinding> bindings;
        std::ranges::transform(lines_, std::back_inserter(bindings), &Line::binding);
        return bindings;
    }

private:
    void readLine(Words words) {
        const bool endsBlock = words.back() == "}";
        const bool hasBrace = words.back() == "{";
        if (endsBlock || hasBrace) {
            words.pop_back();
        }
        const bool beginsBlock = hasBrace || lacksBrace(words);
        if (beginsBlock) {
            blocks_.push_back(inBlock(words));
        } else if (const auto whole = inBlock(words); !words.empty()) {
            execute(whole);
        }
        if (endsBlock && !blocks_.empty()) {
            blocks_.pop_back();
        }
    }

    /// With what stands before each line of the block: "bindsym --flag { Mod4+x kill }" is short
    /// for "bindsym --flag Mod4+x kill".
    Words inBlock(const Words& words) const {
        auto whole = blocks_.empty() ? Words{} : blocks_.back();
        whole.insert(whole.end(), words.begin(), words.end());
        return whole;
    }

    void execute(std::span<const std::string> words) {
        if (words.empty()) {
            return;
        }
        const auto arguments = words.subspan(1);
        if (is(words.front(), "set")) {
            setVariable(arguments);
        } else if (is(words.front(), "include")) {
            include(arguments);
        } else if (is(words.front(), "mode")) {
            executeInMode(arguments);
        } else if (is(words.front(), "bindsym") || is(words.front(), "bindcode")) {
            change(arguments, is(words.front(), "bindcode"), true);
        } else if (is(words.front(), "unbindsym") || is(words.front(), "unbindcode")) {
            change(arguments, is(words.front(), "unbindcode"), false);
        }
    }

    void setVariable(std::span<const std::string> arguments) {
        if (arguments.size() < 2 || !arguments.front().starts_with('$')) {
            return;
        }
        std::string value;
        for (const auto& word : arguments.subspan(1)) {
            value += (value.empty() ? "" : " ") + replaced(word);
        }
        variables_[arguments.front()] = value;
    }

    void include(std::span<const std::string> patterns) {
        for (const auto& pattern : patterns) {
            for (const auto& file : includedFiles_(replaced(pattern), folder_)) {
                read(file);
            }
        }
    }

    void executeInMode(std::span<const std::string> arguments) {
        const auto name = std::ranges::find_if_not(arguments, isFlag);
        if (name != arguments.end() && *name == "default") {
            execute(arguments.subspan(static_cast<std::size_t>(name - arguments.begin()) + 1));
        }
    }

    void change(std::span<const std::string> arguments, bool isCode, bool isBound) {
        const auto keys = std::ranges::find_if_not(arguments, isFlag);
        const auto binding =
            keys == arguments.end() ? std::nullopt : bindingOfKeys(replaced(*keys), isCode);
        if (!binding) {
            return;
        }
        const Line line{.binding = *binding, .flags = {arguments.begin(), keys}};
        std::erase(lines_, line);
        if (isBound) {
            lines_.push_back(line);
        }
    }

    // "$mod" must not be taken for "$m", so the longest name comes first.
    std::string replaced(std::string text) const {
        for (auto variable = variables_.rbegin(); variable != variables_.rend(); ++variable) {
            for (auto at = text.find(variable->first); at != std::string::npos;
                 at = text.find(variable->first, at + variable->second.size())) {
                text.replace(at, variable->first.size(), variable->second);
            }
        }
        return text;
    }

    const IncludedFiles& includedFiles_;
    std::set<std::filesystem::path> files_;
    std::filesystem::path folder_; ///< of the file that is being read
    std::map<std::string, std::string> variables_;
    std::vector<Words> blocks_;
    std::vector<Line> lines_;
};

} // namespace

std::vector<UserBinding> userBindings(const ConfigurationFile& configuration,
                                      const IncludedFiles& includedFiles) {
    Reader reader(includedFiles);
    reader.read(configuration);
    return reader.bindings();
}

std::optional<UserBinding> bindingOfKeys(const std::string& keys, bool isCode) {
    UserBinding binding;
    bool hasKey = false;
    for (const auto& part : partsOf(keys)) {
        const auto number = isCode ? numberIn(part) : std::nullopt;
        if (const auto modifier = modifierNamed(part)) {
            binding.modifiers |= *modifier;
        } else if (part.starts_with("Group")) {
            continue;
        } else if (hasKey || (isCode && !number)) {
            return std::nullopt;
        } else {
            hasKey = true;
            binding.key = isCode ? decltype(binding.key){*number} : decltype(binding.key){part};
        }
    }
    return hasKey ? std::optional{binding} : std::nullopt;
}

} // namespace hollowfernpike::sway
