#include "model/AppShortcut.h"

#include "model/CombinationText.h"

namespace hollowfernpike {

std::string AppShortcut::displayString() const {
    return CombinationText::symbols({.keyCode = keyCode, .modifierFlags = modifierFlags});
}

} // namespace hollowfernpike
