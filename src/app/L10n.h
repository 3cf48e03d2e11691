#pragma once

#include "app/Language.h"

#include <string>
#include <string_view>

/// The texts that embed a value; every other text is a pair of literals where it is used.
namespace hollowfernpike::L10n {

/// What a shortcut does, for desktops that list it among theirs.
inline std::string purpose(std::string_view appName) {
    const std::string name{appName};
    return localized("「" + name + "」を前面に表示", "Bring " + name + " to the front");
}

/// The question before a file is replaced.
inline std::string replaceTitle(std::string_view fileName) {
    const std::string name{fileName};
    return localized("「" + name + "」はすでに存在します。置き換えますか？",
                     "\"" + name + "\" already exists. Replace it?");
}

/// Said of a combination that a shortcut has already.
inline std::string taken(std::string_view appName) {
    const std::string name{appName};
    return localized("この組み合わせは「" + name + "」で使われています",
                     "\"" + name + "\" already has this combination.");
}

} // namespace hollowfernpike::L10n

namespace hollowfernpike::L10n::Main {

/// The question before a shortcut is deleted. The name is inserted as it is.
inline std::string deleteConfirmTitle(std::string_view appName) {
    const std::string name{appName};
    return localized("「" + name + "」のショートカットを削除しますか？",
                     "Delete shortcut for \"" + name + "\"?");
}

/// The text under that question: the shortcut's keys.
inline std::string deleteConfirmInfo(std::string_view displayString) {
    return std::string{localized("ショートカットキー: ", "Shortcut key: ")}.append(displayString);
}

} // namespace hollowfernpike::L10n::Main
