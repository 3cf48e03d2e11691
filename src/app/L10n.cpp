#include "app/L10n.h"

#include "app/Language.h"

namespace hollowfernpike::L10n {

std::string purpose(std::string_view appName) {
    const std::string name{appName};
    return localized("「" + name + "」を前面に表示", "Bring " + name + " to the front");
}

} // namespace hollowfernpike::L10n

namespace hollowfernpike::L10n::Main {

std::string deleteConfirmTitle(std::string_view appName) {
    const std::string name{appName};
    return localized("「" + name + "」のショートカットを削除しますか？",
                     "Delete shortcut for \"" + name + "\"?");
}

std::string deleteConfirmInfo(std::string_view displayString) {
    return std::string{localized("ショートカットキー: ", "Shortcut key: ")}.append(displayString);
}

} // namespace hollowfernpike::L10n::Main
