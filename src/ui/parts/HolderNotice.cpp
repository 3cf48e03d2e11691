#include "ui/parts/HolderNotice.h"

#include "app/Language.h"
#include "hotkeys/HotkeyManager.h"

namespace hollowfernpike {

QString holderNotice(const AppShortcut& shortcut) {
    switch (HotkeyManager::shared().otherHolder(
        {shortcut.keyCode, shortcut.modifierFlags & modifierMask})) {
    case Holder::desktop:
        return localized("この組み合わせはデスクトップから渡されないため、働きません",
                         "The desktop does not hand this combination on, so it does not work");
    case Holder::program:
        return localized("この組み合わせはほかのプログラムが使っています",
                         "Another program holds this combination");
    case Holder::nobody:
        break;
    }
    return {};
}

} // namespace hollowfernpike
