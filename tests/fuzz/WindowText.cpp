#include "fuzz/WindowText.h"

#include "platform/x11/server/Properties.h"
#include "platform/x11/windows/WindowQueries.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace hollowfernpike::test {

namespace {

std::size_t bitsOf(char format) {
    switch (format) {
    case '8':
        return 8;
    case '1':
        return 16;
    case '3':
        return 32;
    default:
        return 0;
    }
}

/// A property's value as xcb hands it over, with nothing behind its end.
x11::PropertyReply property(char format, std::string_view value) {
    const auto bits = bitsOf(format);
    const auto units = bits == 0 ? 0 : value.size() * 8 / bits;
    const auto bytes = units * bits / 8;
    auto* const reply = static_cast<xcb_get_property_reply_t*>(
        std::malloc(sizeof(xcb_get_property_reply_t) + bytes));
    *reply = {};
    reply->format = static_cast<std::uint8_t>(bits);
    reply->value_len = static_cast<std::uint32_t>(units);
    std::memcpy(xcb_get_property_value(reply), value.data(), bytes);
    return x11::PropertyReply(reply);
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(text.size(), end + separator.size()));
    }
    return parts;
}

/// What the lines say, before it is put together.
struct Facts {
    x11::WindowState state;
    x11::WindowTraits traits;
    WindowText text;
};

void takeProperty(Facts& facts, char kind, const x11::PropertyReply& reply) {
    switch (kind) {
    case 'c':
        facts.state.windowClass = x11::textOf(reply);
        break;
    case 'g':
        facts.traits.gtkApplicationId = x11::textOf(reply);
        break;
    case 'k':
        facts.traits.desktopFile = x11::textOf(reply);
        break;
    case 'p':
        if (const auto number = x11::numberOf(reply)) {
            facts.traits.statedProcess = static_cast<std::int32_t>(*number);
        }
        break;
    default:
        break;
    }
}

void takeText(Facts& facts, char kind, std::string value) {
    auto& process = facts.text.process;
    switch (kind) {
    case 's':
        facts.text.window.sandboxApplicationId = std::move(value);
        break;
    case 'i':
        facts.text.identifiers.push_back(std::move(value));
        break;
    case 'f':
        process.flatpakApplication = std::move(value);
        break;
    case 'u':
        process.controlGroup = std::move(value);
        break;
    case 'l':
        process.launchedEntry = std::move(value);
        break;
    case 'x':
        process.executable = std::move(value);
        break;
    case 'a':
        process.commandLine.push_back(std::move(value));
        break;
    default:
        break;
    }
}

void takeLine(Facts& facts, std::string_view line) {
    if (line.size() < 2) {
        return;
    }
    const char kind = line[0];
    const bool isProperty = std::string_view{"cgkp"}.find(kind) != std::string_view::npos;
    std::string value{line.substr(isProperty ? 2 : 1)};
    std::ranges::replace(value, '|', '\0');
    if (isProperty) {
        takeProperty(facts, kind, property(line[1], value));
    } else {
        takeText(facts, kind, std::move(value));
    }
}

} // namespace

WindowText readWindow(std::string_view text) {
    Facts facts;
    for (const auto line : split(text, "\n")) {
        takeLine(facts, line);
    }
    auto window = x11::factsOf(facts.state, facts.traits);
    window.sandboxApplicationId = facts.text.window.sandboxApplicationId;
    facts.text.window = std::move(window);
    return facts.text;
}

std::vector<std::string_view> partsOf(std::string_view text) {
    return split(text, "\n%%\n");
}

} // namespace hollowfernpike::test
