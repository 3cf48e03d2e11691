#include "desktop/windows/WindowStory.h"

#include "support/WaitUntil.h"

#include <fstream>
#include <stdexcept>

namespace hollowfernpike::test {

using nlohmann::json;

WindowStory::WindowStory() : WindowUser(static_cast<Story&>(*this)), front(open("Front")) {}

void WindowStory::start(const Environment& changes) {
    launchUtility(changes);
    // Only the running instance has three connections: for its own windows, for the keys and for
    // the windows of others.
    require([this] { return pager.clients(utility().pid()) > 2; }, "the utility does not come");
}

void WindowStory::add(const Application& application, const Combination& combination) {
    const auto editor = clickAdd();
    choose(editor, application.name());
    record(editor, combination);
    clickSave(editor);
    if (const auto live = isLive(grabOf(combination)); !live) {
        throw std::runtime_error(live.message());
    }
}

json WindowStory::list() const {
    return contents(shortcutsFile());
}

testing::AssertionResult WindowStory::listBecomes(const json& expected) {
    if (waitUntil([&] { return list() == expected; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << list().dump(2) << "\nis not\n" << expected.dump(2);
}

json WindowStory::record(std::size_t index, const Combination& combination,
                         const Application& application) const {
    const auto written = list();
    return {{"id", index < written.size() ? written[index]["id"] : json{}},
            {"keyCode", combination.keyCode},
            {"modifierFlags", combination.modifierFlags},
            {"appPath", application.entry().string()},
            {"appName", application.name()},
            {"appBundleIdentifier", application.identifier()}};
}

json contents(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return stream ? json::parse(stream) : json::array();
}

} // namespace hollowfernpike::test
