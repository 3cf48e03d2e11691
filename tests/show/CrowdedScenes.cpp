#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Studio.h"
#include "support/XClient.h"

#include <stdexcept>

namespace hollowfernpike::show {

void takeCrowded(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    const test::Combination taken{111, test::control | test::option | test::shift | test::command};
    studio.bind(longName, taken);
    studio.bind("NoLongerInstalled", {49, test::control});
    bindKnown(studio);
    test::XClient other(studio.story.desktop.display());
    if (!other.grab(studio.story.grabOf(taken))) {
        throw std::runtime_error("the combination cannot be taken");
    }
    studio.start();
    studio.user.openManagement();
    studio.take("crowded-window");
    for (const auto* key : {"TAB", "RTRN"}) { // from the button to the first card
        studio.story.keyboard.strike({key});
    }
    studio.user.comes(studio.user.titles.editing);
    studio.take("crowded-editor");
}

} // namespace hollowfernpike::show
