#include "platform/kde/keys/KeyValues.h"

#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/freedesktop/keyboard/Modifiers.h"

#include <QChar>

#include <bit>
#include <limits>
#include <memory>

#include <private/qxkbcommon_p.h>
#include <xkbcommon/xkbcommon.h>

namespace hollowfernpike::kde {

namespace {

using namespace platform::event_flags;
namespace real = freedesktop::real_modifiers;

/// Both names of a modifier that KWin takes for the same, whatever the keyboard map says.
struct ModifierPair {
    std::uint64_t flag;
    freedesktop::ModifierState real;
    Qt::KeyboardModifier qt;
};

constexpr ModifierPair modifierPairs[] = {
    {shift, real::shift, Qt::ShiftModifier},
    {control, real::control, Qt::ControlModifier},
    {option, real::mod1, Qt::AltModifier},
    {command, real::mod4, Qt::MetaModifier},
};

constexpr freedesktop::ModifierState numLockModifier = real::mod2;

using State = std::unique_ptr<xkb_state, decltype(&xkb_state_unref)>;

State stateOf(xkb_keymap* keymap, std::uint32_t layout, std::uint64_t modifierFlags, bool numLock) {
    xkb_mod_mask_t held = 0;
    for (const auto& pair : modifierPairs) {
        held |= (modifierFlags & pair.flag) != 0 ? pair.real : 0U;
    }
    State state{xkb_state_new(keymap), &xkb_state_unref};
    xkb_state_update_mask(state.get(), held, 0, numLock ? numLockModifier : 0U, 0, 0, layout);
    return state;
}

/// KWin keeps a dead key for the letter that comes next.
bool hasValue(xkb_keysym_t symbol) {
    const bool isDead = symbol >= XKB_KEY_dead_grave && symbol <= XKB_KEY_dead_longsolidusoverlay;
    return symbol != XKB_KEY_NoSymbol && !isDead;
}

/// KWin asks the toolkit in the same way, as if Control was held: then a letter of a script without
/// Latin letters counts as the Latin one that another layout of the map has on its key.
int keyOf(xkb_state* state, xkb_keycode_t keycode, xkb_keysym_t symbol) {
    const int key = QXkbCommon::keysymToQtKey(symbol, Qt::ControlModifier, state, keycode);
    constexpr int lastLatin1 = 0xff;
    const bool isLatin1 = QXkbCommon::isLatin1(symbol) && key > lastLatin1;
    return isLatin1 ? static_cast<int>(symbol) : key;
}

/// The toolkit of Plasma 5 has other numbers for the keys "Launch 0" to "Launch D", which most
/// keyboard maps have on F14 to F18.
int keyOfPlasma5(int key) {
    constexpr int difference = 2;
    return key >= Qt::Key_Launch0 && key <= Qt::Key_LaunchD ? key + difference : key;
}

bool isLetter(int key) {
    return key <= std::numeric_limits<char16_t>::max() &&
           QChar(static_cast<char16_t>(key)).isLetter();
}

/// Whether the modifier has done its work by choosing the symbol. Shift with a letter counts all
/// the same.
bool isUsedUp(xkb_state* state, xkb_keycode_t keycode, int key, const ModifierPair& pair) {
    const auto index = static_cast<xkb_mod_index_t>(std::countr_zero(pair.real));
    return (pair.flag != shift || !isLetter(key)) &&
           xkb_state_mod_index_is_consumed2(state, keycode, index, XKB_CONSUMED_MODE_GTK) == 1;
}

} // namespace

QList<int> KeyValues::valuesOf(const platform::KeyCombination& combination) const {
    QList<int> values;
    for (const auto evdev : freedesktop::evdevCodesOf(combination.keyCode)) {
        for (const bool numLock : {false, true}) {
            const int value = valueOf(evdev, combination.modifierFlags, numLock);
            if (value != 0 && !values.contains(value)) {
                values.push_back(value);
            }
        }
    }
    return values;
}

std::optional<platform::KeyCombination> KeyValues::combinationOf(int value) const {
    const auto modifiers = QKeyCombination::fromCombined(value).keyboardModifiers();
    std::uint64_t modifierFlags = 0;
    for (const auto& pair : modifierPairs) {
        modifierFlags |= modifiers.testFlag(pair.qt) ? pair.flag : 0;
    }
    for (const auto flags : {modifierFlags, modifierFlags | shift}) {
        for (std::uint16_t evdev = 1; evdev < freedesktop::firstUnnumberedKeyCode; ++evdev) {
            const platform::KeyCombination combination{freedesktop::virtualKeyCodeOf(evdev), flags};
            if (valuesOf(combination).contains(value)) {
                return combination;
            }
        }
    }
    return std::nullopt;
}

int KeyValues::valueOf(std::uint16_t evdev, std::uint64_t modifierFlags, bool numLock) const {
    const xkb_keycode_t keycode = evdev + freedesktop::xkbKeyCodeOffset;
    const auto state = stateOf(keymap_.get(), layout_, modifierFlags, numLock);
    const auto symbol = xkb_state_key_get_one_sym(state.get(), keycode);
    int key = hasValue(symbol) ? keyOf(state.get(), keycode, symbol) : 0;
    if (key == 0) {
        return 0;
    }
    Qt::KeyboardModifiers modifiers;
    for (const auto& pair : modifierPairs) {
        modifiers.setFlag(pair.qt, (modifierFlags & pair.flag) != 0 &&
                                       !isUsedUp(state.get(), keycode, key, pair));
    }
    if (key == Qt::Key_Backtab) { // the settings of the desktop record it like this
        key = Qt::Key_Tab;
        modifiers.setFlag(Qt::ShiftModifier);
    }
    if (plasma_ == Plasma::five) {
        key = keyOfPlasma5(key);
    }
    modifiers.setFlag(Qt::KeypadModifier, plasma_ == Plasma::six && QXkbCommon::isKeypad(symbol));
    return QKeyCombination(modifiers, static_cast<Qt::Key>(key)).toCombined();
}

} // namespace hollowfernpike::kde
