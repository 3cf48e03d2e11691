#include "show/Typing.h"

#include "support/Strokes.h"

namespace hollowfernpike::show {

void type(test::KeyInjector& keyboard, std::string_view text) {
    for (const auto& keys : test::strokesFor(text)) {
        keyboard.strike(keys);
    }
}

} // namespace hollowfernpike::show
