#include "desktop/NewWindowManager.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

bool isManaged(Story& story, const Application& application) {
    const auto shown = application.windows();
    const auto managed = story.pager.stacking();
    return !shown.empty() && std::ranges::find(managed, shown.front()) != managed.end();
}

} // namespace

std::unique_ptr<ChildProcess> startNewWindowManager(Story& story,
                                                    const std::vector<std::string>& program) {
    auto successor = story.desktop.start(program);
    if (!story.desktop.windowManager().wait()) {
        throw std::runtime_error("the window manager stays: " + successor->errors());
    }
    auto& newcomer = story.install("Newcomer");
    newcomer.start();
    if (!waitUntil([&] { return isManaged(story, newcomer); }) || !story.switchTo(newcomer)) {
        throw std::runtime_error("the new window manager does not manage: " + successor->errors());
    }
    return successor;
}

} // namespace hollowfernpike::test
