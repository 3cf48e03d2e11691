#include "show/Studio.h"

#include "show/Camera.h"
#include "show/Furniture.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::show {

namespace {

/// Windows with a large font need more room.
test::ScreenSize screenSize(const Edition& edition) {
    const int growth = edition.scale * std::max(1, edition.points / Edition::usualPoints);
    return {.width = 800 * growth, .height = 680 * growth};
}

} // namespace

Studio::Studio(const Edition& chosenEdition, std::filesystem::path folder)
    : edition(chosenEdition), story("openbox", screenSize(chosenEdition)),
      user(story, chosenEdition.titles(), chosenEdition.scale), folder_(std::move(folder)),
      environment_(furnish(story.desktop, chosenEdition)) {
    setLanguage(story.desktop, chosenEdition);
    std::filesystem::current_path(story.desktop.home()); // as in a session of its own
}

void Studio::bind(const std::string& application, const test::Combination& combination) {
    story.bind(combination,
               {.path = entry(application), .name = application, .identifier = application});
}

void Studio::start(const test::Environment& changes) {
    launch(changes);
    user.require([this] { return story.pager.clients(story.utility().pid()) > 2; },
                 "the utility does not come");
}

void Studio::launch(const test::Environment& changes) {
    story.writeShortcuts();
    story.launchUtility(test::changed(environment_, changes));
}

std::filesystem::path Studio::entry(const std::string& application) const {
    return story.desktop.applications() / (application + ".desktop");
}

void Studio::take(const std::string& name) {
    take(name, 0);
}

void Studio::takeBelowPanel(const std::string& name) {
    take(name, panelHeight * edition.scale);
}

void Studio::take(const std::string& name, int top) {
    const int margin = 16 * edition.scale;
    QImage next;
    const auto isNew = [&] {
        const auto whole = picture(story.desktop.display());
        next = cropped(whole, whole.rect().adjusted(0, top, 0, 0),
                       0xFF000000U | groundColor(edition), margin);
        return !next.isNull() && next != last_;
    };
    if (!test::waitUntil(isNew)) {
        throw std::runtime_error(edition.name() + '/' + name + " shows nothing new");
    }
    save(next, folder_ / (name + ".png"));
    last_ = next;
}

} // namespace hollowfernpike::show
