#include "desktop/gnome/GnomeStory.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"
#include "package/InstalledPackage.h"
#include "support/WaitUntil.h"

#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

// The other tests of this program need no story on Wayland.
std::unique_ptr<WaylandStory> makeStory(const KeyboardLayout& layout) {
    return std::make_unique<GnomeStory>(GnomeSettings{.layout = layout});
}

namespace {

using testing::HasSubstr;

constexpr auto promptTitle = "ショートカットキーを検出できません";
constexpr Combination firstCombination{4, control | option};

/// Somebody who has never seen the utility, on GNOME. Leaves a picture of each step.
class FreshGnomeTest : public testing::Test {
protected:
    void logIn(bool seesPackage) {
        user_.reset();
        GnomeSettings settings{.hasExtension = false, .enablesExtension = false, .home = home_};
        if (seesPackage) {
            settings.shown.assign(parts.begin(), parts.end());
        }
        user_.emplace(japaneseWords, std::make_unique<GnomeStory>(settings));
        callOnBus(gnome().desktop.environment(), {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus.ReloadConfig"});
    }

    /// The package comes while the session runs.
    void install() {
        for (const auto* part : parts) {
            gnome().desktop.showOfMachine(part);
        }
        callOnBus(gnome().desktop.environment(), {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus.ReloadConfig"});
    }

    KeyboardUserOnWayland& user() { return *user_; }
    GnomeStory& gnome() { return static_cast<GnomeStory&>(user().story); }

    bool becomes(const std::string& condition) {
        return waitUntil([&] { return gnome().desktop.evaluate(condition).get<bool>(); });
    }

    /// The shell lists a window some time before it has painted it.
    void picture(const std::string& name) {
        EXPECT_TRUE(becomes("global.get_window_actors().every(actor => actor.visible && "
                            "actor.get_image(null) !== null)"));
        for (int frame = 0; frame < 30; ++frame) {
            gnome().desktop.evaluate("new Promise(resolve => {"
                                     "  const painted = global.stage.connect('after-paint', () => {"
                                     "    global.stage.disconnect(painted); resolve(0);"
                                     "  });"
                                     "  global.stage.queue_redraw();"
                                     "})");
        }
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        gnome().desktop.takePicture(std::filesystem::path(HFP_PICTURES) / test->name() /
                                    (std::to_string(++pictures_) + ' ' + name + ".png"));
    }

    void startFromOverview() {
        const auto type = [this] {
            gnome().desktop.evaluate("Main.overview.show(); 0");
            for (const auto* key : {"AC06", "AD09", "AC09", "AC09", "AD09", "AD02"}) { // "hollow"
                user().story.keyboard.strike({key});
            }
            return waitUntil(
                [&] {
                    return gnome()
                               .desktop
                               .evaluate("Main.overview._overview.controls._searchController._"
                                         "searchResults"
                                         "._defaultResult?.app?.get_id() ?? ''")
                               .get<std::string>() == "app.hollowfernpike.Hollowfernpike.desktop";
                },
                3s);
        };
        ASSERT_TRUE(waitUntil([&] {
            const bool isFound = type();
            if (!isFound) {
                gnome().desktop.evaluate("Main.overview.hide(); 0");
            }
            return isFound;
        }));
        picture("overview");
        user().story.keyboard.strike({"RTRN"});
    }

    /// Screen readers know of it some time before it is on the screen.
    Accessible prompt() {
        auto window = user().reader.find("alert message", promptTitle);
        EXPECT_TRUE(becomes("const last = global.get_window_actors().at(-1)?.meta_window;"
                            "last?.title === '" +
                            std::string{user().words.titles.alert} +
                            "' && last.get_transient_for()?.title === '" +
                            std::string{user().words.titles.management} + "'"));
        return window;
    }

private:
    static constexpr std::array parts{"applications/app.hollowfernpike.Hollowfernpike.desktop",
                                      "dbus-1/services/app.hollowfernpike.Hollowfernpike.service",
                                      "gnome-shell/extensions", "icons/hicolor"};

    InstalledPackage package_;
    Home home_ = std::make_shared<TemporaryDirectory>();
    std::optional<KeyboardUserOnWayland> user_;
    int pictures_ = 0;
};

TEST_F(FreshGnomeTest, FromTheOverviewToTheFirstCombination) {
    logIn(false);
    install();
    startFromOverview();
    auto window = prompt();
    EXPECT_THAT(user().reader.description(window), HasSubstr("ログアウト"));
    picture("log in again");

    logIn(true);
    startFromOverview();
    window = prompt();
    picture("one click");
    user().reader.press(user().reader.find(window, "push button", "拡張機能を有効にする"));
    ASSERT_TRUE(user().isGone(std::string{user().words.titles.alert}));

    user().press(user().managementComes(), user().words.add);
    const auto editor = user().dialogComes(user().words.titles.adding);
    user().choose(editor, user().target);
    picture("editor");
    user().press(editor, user().words.record);
    user().reader.find(editor, "push button", "停止");
    user().story.strike(firstCombination);
    user().reader.find(editor, "label", "⌃⌥H");
    user().strikeAndLeave(user().words.titles.adding, "RTRN");
    picture("list");

    EXPECT_TRUE(user().story.switchTo(user().front));
    user().story.strike(firstCombination);
    EXPECT_TRUE(user().story.isInFront(user().target));
    EXPECT_TRUE(user().story.nobodySaw(firstCombination));
    picture("first combination");
}

} // namespace
} // namespace hollowfernpike::test
