#include "desktop/kde/ShortcutSettings.h"

#include <algorithm>

namespace hollowfernpike::test {

namespace {

constexpr const char* component = "app.hollowfernpike.Hollowfernpike";
constexpr const char* componentPath = "/component/app_hollowfernpike_Hollowfernpike";

/// Floating.
GVariant* listOf(const std::vector<int>& keys) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_INT32, keys.data(), keys.size(), sizeof(int));
}

} // namespace

std::vector<ListedShortcut> ShortcutSettings::list() const {
    const auto reply =
        call(componentPath, "org.kde.kglobalaccel.Component", "allShortcutInfos", nullptr);
    std::vector<ListedShortcut> shortcuts;
    if (!reply) {
        return shortcuts;
    }
    GVariantIter* infos = nullptr;
    g_variant_get(reply.get(), "(a(ssssssaiai))", &infos);
    const char* name = nullptr;
    const char* label = nullptr;
    GVariantIter* keys = nullptr;
    while (g_variant_iter_loop(infos, "(&s&s&s&s&s&saiai)", &name, &label, nullptr, nullptr,
                               nullptr, nullptr, &keys, nullptr) != FALSE) {
        ListedShortcut shortcut{.name = name, .label = label, .keys = {}};
        int key = 0;
        while (g_variant_iter_next(keys, "i", &key) != FALSE) {
            if (key != 0) {
                shortcut.keys.push_back(key);
            }
        }
        shortcuts.push_back(std::move(shortcut));
    }
    g_variant_iter_free(infos);
    return shortcuts;
}

std::optional<ListedShortcut> ShortcutSettings::find(const std::string& label) const {
    const auto all = list();
    const auto found = std::ranges::find(all, label, &ListedShortcut::label);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

void ShortcutSettings::change(const ListedShortcut& shortcut, const std::vector<int>& keys) const {
    setForeign(
        {component, shortcut.name.c_str(), "Hollowfernpike", shortcut.label.c_str(), nullptr},
        keys);
}

void ShortcutSettings::registerOther(const std::string& action,
                                     const std::vector<int>& keys) const {
    constexpr guint32 presentAndAsGiven = 6;
    const char* const identifier[] = {"other", action.c_str(), "Other", action.c_str(), nullptr};
    call("/kglobalaccel", "org.kde.KGlobalAccel", "doRegister", g_variant_new("(^as)", identifier));
    call("/kglobalaccel", "org.kde.KGlobalAccel", "setShortcut",
         g_variant_new("(^as@aiu)", identifier, listOf(keys), presentAndAsGiven));
}

void ShortcutSettings::changeOther(const std::string& action, const std::vector<int>& keys) const {
    setForeign({"other", action.c_str(), "Other", action.c_str(), nullptr}, keys);
}

void ShortcutSettings::setForeign(const char* const (&identifier)[5],
                                  const std::vector<int>& keys) const {
    call("/kglobalaccel", "org.kde.KGlobalAccel", "setForeignShortcut",
         g_variant_new("(^as@ai)", identifier, listOf(keys)));
}

ShortcutSettings::Reply ShortcutSettings::call(const char* path, const char* interface,
                                               const char* method, GVariant* arguments) const {
    constexpr int patienceInMilliseconds = 30'000;
    return Reply(g_dbus_connection_call_sync(
        connection_.get(), "org.kde.kglobalaccel", path, interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, patienceInMilliseconds, nullptr, nullptr));
}

} // namespace hollowfernpike::test
