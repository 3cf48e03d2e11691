#include "platform/freedesktop/instance/InstanceRequest.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view form = "hollowfernpike request 2\n";

bool isControl(char letter) {
    return static_cast<unsigned char>(letter) < ' ' || letter == '\x7F';
}

bool isLine(std::string_view text) {
    return text.size() <= longestRequestText && std::ranges::none_of(text, isControl);
}

std::string line(const std::string& text) {
    return (isLine(text) ? text : std::string{}) + '\n';
}

// Cuts the first line off the text.
std::optional<std::string> takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos || !isLine(text.substr(0, end))) {
        return std::nullopt;
    }
    std::string taken(text.substr(0, end));
    text.remove_prefix(end + 1);
    return taken;
}

} // namespace

std::string encoded(const InstanceRequest& request) {
    if (request.action.empty() || !isLine(request.action) || !isLine(request.parameter)) {
        throw std::invalid_argument("the action of a request is one short line");
    }
    return std::string{form} + line(request.action) + line(request.startupIdentifier) +
           (request.parameter.empty() ? std::string{} : line(request.parameter));
}

std::optional<InstanceRequest> decoded(std::string_view text) {
    if (!text.starts_with(form)) {
        return std::nullopt;
    }
    text.remove_prefix(form.size());
    auto action = takeLine(text);
    auto startupIdentifier = takeLine(text);
    const bool hasParameter = !text.empty();
    auto parameter = hasParameter ? takeLine(text) : std::string{};
    if (!action || action->empty() || !startupIdentifier || !parameter ||
        parameter->empty() == hasParameter || !text.empty()) {
        return std::nullopt;
    }
    return InstanceRequest{std::move(*action), std::move(*startupIdentifier),
                           std::move(*parameter)};
}

} // namespace hollowfernpike::freedesktop
