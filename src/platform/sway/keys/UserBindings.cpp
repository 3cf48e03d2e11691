#include "platform/sway/keys/UserBindings.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <span>

#include <strings.h>

namespace hollowfernpike::sway {

namespace {

using Words = std::vector<std::string>;
namespace real = freedesktop::real_modifiers;

constexpr int deepestInclude = 16;

constexpr std::pair<const char*, freedesktop::ModifierState> modifierWords[] = {
    {"Shift", real::shift},  {"Lock", real::lock}, {"Control", real::control},
    {"Ctrl", real::control}, {"Mod1", real::mod1}, {"Alt", real::mod1},
    {"Mod2", real::mod2},    {"Mod3", real::mod3}, {"Mod4", real::mod4},
    {"Super", real::mod4},   {"Mod5", real::mod5}};

std::optional<freedesktop::ModifierState> modifierNamed(const std::string& name) {
    const auto* const found = std::ranges::find_if(modifierWords, [&](const auto& known) {
        return ::strcasecmp(known.first, name.c_str()) == 0;
    });
    return found == std::end(modifierWords) ? std::nullopt : std::optional{found->second};
}

Words split(std::string_view text, std::string_view separators) {
    Words words;
    while (true) {
        const auto begin = text.find_first_not_of(separators);
        if (begin == std::string_view::npos) {
            return words;
        }
        const auto end = std::min(text.find_first_of(separators, begin), text.size());
        words.emplace_back(text.substr(begin, end - begin));
        text.remove_prefix(end);
    }
}

std::optional<std::uint32_t> numberIn(const std::string& text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{number}
                                                                    : std::nullopt;
}

/// What "Mod4+Shift+x" means. Absent for several keys at once, which no combination of ours is.
std::optional<UserBinding> bindingOf(const std::string& keys, bool isCode) {
    UserBinding binding;
    bool hasKey = false;
    for (const auto& part : split(keys, "+")) {
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

/// Reads a configuration line by line, as sway does.
class Reader {
public:
    explicit Reader(const IncludedFiles& includedFiles) : includedFiles_(includedFiles) {}

    void read(std::string_view text) {
        std::string line;
        for (const auto& part : lines(text)) {
            line += part;
            if (line.ends_with('\\')) {
                line.pop_back();
                continue;
            }
            readLine(split(line, " \t\r"));
            line.clear();
        }
        readLine(split(line, " \t\r"));
    }

    std::vector<UserBinding> take() { return std::move(bindings_); }

private:
    static std::vector<std::string> lines(std::string_view text) {
        std::vector<std::string> result;
        while (!text.empty()) {
            const auto end = std::min(text.find('\n'), text.size());
            result.emplace_back(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return result;
    }

    void readLine(Words words) {
        if (words.empty() || words.front().starts_with('#')) {
            return;
        }
        if (words.front() == "}") {
            if (!blocks_.empty()) {
                blocks_.pop_back();
            }
            return;
        }
        if (words.back() == "{") {
            words.pop_back();
            blocks_.push_back(block(std::move(words)));
            return;
        }
        Words inBlock = blocks_.empty() ? Words{} : blocks_.back();
        inBlock.insert(inBlock.end(), words.begin(), words.end());
        execute(inBlock);
    }

    /// What stands before each line of a block: "bindsym --flag { Mod4+x kill }" is short for
    /// "bindsym --flag Mod4+x kill".
    Words block(Words words) const {
        if (blocks_.empty()) {
            return words;
        }
        auto whole = blocks_.back();
        whole.insert(whole.end(), words.begin(), words.end());
        return whole;
    }

    void execute(const Words& words) {
        const auto& command = words.front();
        if (command == "set" && words.size() > 2) {
            setVariable(words);
        } else if (command == "include" && words.size() > 1) {
            include(words);
        } else if (command == "bindsym" || command == "bindcode") {
            change(words, command == "bindcode", true);
        } else if (command == "unbindsym" || command == "unbindcode") {
            change(words, command == "unbindcode", false);
        }
    }

    void setVariable(const Words& words) {
        std::string value;
        for (const auto& word : std::span(words).subspan(2)) {
            value += (value.empty() ? "" : " ") + replaced(word);
        }
        variables_[words.at(1)] = value;
    }

    void include(const Words& words) {
        if (depth_ >= deepestInclude) {
            return;
        }
        ++depth_;
        for (const auto& pattern : std::span(words).subspan(1)) {
            for (const auto& text : includedFiles_(replaced(pattern))) {
                read(text);
            }
        }
        --depth_;
    }

    void change(const Words& words, bool isCode, bool isBound) {
        const auto keys = std::find_if(words.begin() + 1, words.end(),
                                       [](const auto& word) { return !word.starts_with("--"); });
        const auto binding =
            keys == words.end() ? std::nullopt : bindingOf(replaced(*keys), isCode);
        if (!binding) {
            return;
        }
        std::erase(bindings_, *binding);
        if (isBound) {
            bindings_.push_back(*binding);
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
    std::map<std::string, std::string> variables_;
    std::vector<Words> blocks_;
    std::vector<UserBinding> bindings_;
    int depth_ = 0;
};

} // namespace

std::vector<UserBinding> userBindings(std::string_view configuration,
                                      const IncludedFiles& includedFiles) {
    Reader reader(includedFiles);
    reader.read(configuration);
    return reader.take();
}

} // namespace hollowfernpike::sway
