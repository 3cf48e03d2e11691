#include "platform/sway/ipc/Json.h"

namespace hollowfernpike::sway {

// Not recursive: how deep windows are nested is up to the user.
rapidjson::Document parse(std::string_view text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (document.HasParseError()) {
        document.SetNull();
    }
    return document;
}

const rapidjson::Value& member(const rapidjson::Value& value, const char* name) {
    static const rapidjson::Value nothing;
    if (!value.IsObject()) {
        return nothing;
    }
    const auto found = value.FindMember(name);
    return found == value.MemberEnd() ? nothing : found->value;
}

std::string textMember(const rapidjson::Value& value, const char* name) {
    const auto& text = member(value, name);
    return text.IsString() ? std::string{text.GetString(), text.GetStringLength()} : std::string{};
}

} // namespace hollowfernpike::sway
