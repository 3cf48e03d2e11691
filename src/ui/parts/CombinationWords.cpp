#include "ui/parts/CombinationWords.h"

#include "app/Language.h"
#include "model/AppShortcut.h"
#include "model/KeyCodeMapper.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace hollowfernpike {

namespace {

struct ModifierInWords {
    std::uint64_t flag;
    const char* symbol;
    const char* name;
};

constexpr std::array modifiersByName{
    ModifierInWords{platform::event_flags::control, "⌃", "Control"},
    ModifierInWords{platform::event_flags::option, "⌥", "Alt"},
    ModifierInWords{platform::event_flags::shift, "⇧", "Shift"},
    ModifierInWords{platform::event_flags::command, "⌘", "Super"},
};

struct KeyWords {
    std::uint16_t keyCode;
    const char* english;
    const char* japanese = nullptr; ///< null if it is the same
};

/// Keys whose short name is missing, a symbol, or not what is printed on them. From 256 on, the
/// kernel's numbers of keys.
constexpr std::array keyWords{
    KeyWords{10, "< >"},
    KeyWords{50, "`"},
    KeyWords{51, "Backspace"},
    KeyWords{64, "F17"},
    KeyWords{65, "Keypad .", "テンキー ."},
    KeyWords{67, "Keypad *", "テンキー *"},
    KeyWords{69, "Keypad +", "テンキー +"},
    KeyWords{71, "Num Lock"},
    KeyWords{75, "Keypad /", "テンキー /"},
    KeyWords{76, "Keypad Enter", "テンキー Enter"},
    KeyWords{78, "Keypad -", "テンキー -"},
    KeyWords{79, "F18"},
    KeyWords{80, "F19"},
    KeyWords{81, "Keypad =", "テンキー ="},
    KeyWords{82, "Keypad 0", "テンキー 0"},
    KeyWords{83, "Keypad 1", "テンキー 1"},
    KeyWords{84, "Keypad 2", "テンキー 2"},
    KeyWords{85, "Keypad 3", "テンキー 3"},
    KeyWords{86, "Keypad 4", "テンキー 4"},
    KeyWords{87, "Keypad 5", "テンキー 5"},
    KeyWords{88, "Keypad 6", "テンキー 6"},
    KeyWords{89, "Keypad 7", "テンキー 7"},
    KeyWords{90, "F20"},
    KeyWords{91, "Keypad 8", "テンキー 8"},
    KeyWords{92, "Keypad 9", "テンキー 9"},
    KeyWords{93, "Yen", "¥"},
    KeyWords{94, "Ro", "ろ"},
    KeyWords{95, "Keypad ,", "テンキー ,"},
    KeyWords{102, "Muhenkan", "無変換"},
    KeyWords{104, "Henkan", "変換"},
    KeyWords{106, "F16"},
    KeyWords{114, "Insert"},
    KeyWords{115, "Home"},
    KeyWords{116, "Page Up"},
    KeyWords{117, "Delete"},
    KeyWords{119, "End"},
    KeyWords{121, "Page Down"},
    KeyWords{123, "Left", "左"},
    KeyWords{124, "Right", "右"},
    KeyWords{125, "Down", "下"},
    KeyWords{126, "Up", "上"},
    KeyWords{256 + 70, "Scroll Lock"},
    KeyWords{256 + 99, "Print Screen"},
    KeyWords{256 + 113, "Mute", "消音"},
    KeyWords{256 + 114, "Volume Down", "音量を下げる"},
    KeyWords{256 + 115, "Volume Up", "音量を上げる"},
    KeyWords{256 + 119, "Pause"},
    KeyWords{256 + 127, "Menu", "メニュー"},
    KeyWords{256 + 140, "Calculator", "電卓"},
    KeyWords{256 + 142, "Sleep", "スリープ"},
    KeyWords{256 + 144, "Files", "ファイル"},
    KeyWords{256 + 150, "Web Browser", "ブラウザー"},
    KeyWords{256 + 155, "Mail", "メール"},
    KeyWords{256 + 156, "Favorites", "お気に入り"},
    KeyWords{256 + 157, "Computer", "コンピューター"},
    KeyWords{256 + 158, "Back", "戻る"},
    KeyWords{256 + 159, "Forward", "進む"},
    KeyWords{256 + 161, "Eject", "取り出し"},
    KeyWords{256 + 163, "Next Track", "次の曲"},
    KeyWords{256 + 164, "Play or Pause", "再生と一時停止"},
    KeyWords{256 + 165, "Previous Track", "前の曲"},
    KeyWords{256 + 166, "Stop", "停止"},
    KeyWords{256 + 171, "Tools", "ツール"},
    KeyWords{256 + 172, "Home Page", "ホームページ"},
    KeyWords{256 + 173, "Reload", "再読み込み"},
    KeyWords{256 + 212, "Camera", "カメラ"},
    KeyWords{256 + 217, "Search", "検索"},
    KeyWords{256 + 224, "Brightness Down", "画面を暗く"},
    KeyWords{256 + 225, "Brightness Up", "画面を明るく"},
    KeyWords{256 + 227, "Switch Display", "画面の切り替え"},
    KeyWords{256 + 228, "Keyboard Light", "キーボードの照明"},
    KeyWords{256 + 229, "Keyboard Light Down", "キーボードを暗く"},
    KeyWords{256 + 230, "Keyboard Light Up", "キーボードを明るく"},
    KeyWords{256 + 238, "Wireless", "無線"},
    KeyWords{256 + 247, "Airplane Mode", "機内モード"},
    KeyWords{256 + 248, "Mute Microphone", "マイクの消音"},
};

static_assert(std::ranges::is_sorted(keyWords, {}, &KeyWords::keyCode));

QString keyInWords(std::uint16_t keyCode) {
    const auto* const found = std::ranges::lower_bound(keyWords, keyCode, {}, &KeyWords::keyCode);
    if (found == keyWords.end() || found->keyCode != keyCode) {
        return QString::fromStdString(KeyCodeMapper::keyName(keyCode));
    }
    return found->japanese == nullptr ? found->english : localized(found->japanese, found->english);
}

} // namespace

QString combinationInWords(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    QStringList words;
    for (const auto& modifier : modifiersByName) {
        if ((modifierFlags & modifier.flag) != 0) {
            words += modifier.name;
        }
    }
    return (words << keyInWords(keyCode)).join(" + ");
}

QString modifiersInWords() {
    QStringList words;
    for (const auto& modifier : modifiersByName) {
        words += QString(modifier.symbol) + ' ' + modifier.name;
    }
    return words.join(", ");
}

} // namespace hollowfernpike
