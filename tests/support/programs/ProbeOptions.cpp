#include "support/programs/ProbeOptions.h"

#include <array>
#include <charconv>
#include <functional>
#include <map>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

template <class Number>
Number number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw std::invalid_argument("not a number: " + std::string{text});
    }
    return value;
}

std::string_view takeField(std::string_view& list) {
    const auto end = std::min(list.find(','), list.size());
    const auto field = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    return field;
}

void setClass(ProbeOptions& options, std::string_view value) {
    options.instanceName = takeField(value);
    options.className = value;
}

void setGeometry(ProbeOptions& options, std::string_view value) {
    options.x = number<std::int16_t>(takeField(value));
    options.y = number<std::int16_t>(takeField(value));
    options.width = number<std::uint16_t>(takeField(value));
    options.height = number<std::uint16_t>(value);
}

using Flag = std::function<void(ProbeOptions&)>;
using Setting = std::function<void(ProbeOptions&, std::string_view)>;

const std::map<std::string_view, Flag>& switches() {
    static const std::map<std::string_view, Flag> table{
        {"--no-pid", [](auto& options) { options.hasPid = false; }},
        {"--no-window", [](auto& options) { options.windows = 0; }},
        {"--transient", [](auto& options) { options.transient = true; }},
        {"--fullscreen", [](auto& options) { options.isFullscreen = true; }},
        {"--exit-on-key", [](auto& options) { options.crashesOnKey = true; }},
        {"--hand-over", [](auto& options) { options.handsOver = true; }},
        {"--single", [](auto& options) { options.isSingle = true; }},
        {"--fork-child", [](auto& options) { options.forksChild = true; }},
    };
    return table;
}

const std::map<std::string_view, Setting>& settings() {
    static const std::map<std::string_view, Setting> table{
        {"--class", setClass},
        {"--geometry", setGeometry},
        {"--title", [](auto& options, auto value) { options.title = value; }},
        {"--pid", [](auto& options, auto value) { options.pid = number<std::uint32_t>(value); }},
        {"--machine", [](auto& options, auto value) { options.machine = value; }},
        {"--gtk-id", [](auto& options, auto value) { options.gtkApplicationId = value; }},
        {"--desktop-file", [](auto& options, auto value) { options.desktopFile = value; }},
        {"--type", [](auto& options, auto value) { options.type = value; }},
        {"--log", [](auto& options, auto value) { options.log = value; }},
        {"--delay",
         [](auto& options, auto value) {
             options.delay = std::chrono::milliseconds{number<int>(value)};
         }},
        {"--windows", [](auto& options, auto value) { options.windows = number<int>(value); }},
    };
    return table;
}

} // namespace

ProbeOptions parseProbeOptions(std::span<char*> arguments) {
    ProbeOptions options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view name = arguments[index];
        if (const auto flag = switches().find(name); flag != switches().end()) {
            flag->second(options);
        } else if (const auto setting = settings().find(name);
                   setting != settings().end() && index + 1 < arguments.size()) {
            setting->second(options, arguments[++index]);
        } else {
            throw std::invalid_argument("unknown option: " + std::string{name});
        }
    }
    return options;
}

} // namespace hollowfernpike::test
