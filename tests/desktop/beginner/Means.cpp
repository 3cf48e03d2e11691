#include "desktop/beginner/Means.h"

#include "desktop/beginner/OwnEntry.h"
#include "desktop/resident/StatusMenu.h"
#include "show/Panel.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

/// Somebody at a panel with the older kind of tray.
class AtOlderTray : public Means {
public:
    explicit AtOlderTray(EditorStory& story) : story_(story) {}

    void startPanel() override {
        if (!tray_) {
            tray_.emplace(story_, story_, 1);
        }
    }

    void panelShowsSymbol() override { tray_->showsSymbol(); }

protected:
    EditorStory& story_;
    std::optional<show::Panel> tray_;
};

class ByKeyboard final : public AtOlderTray {
public:
    using AtOlderTray::AtOlderTray;

    void press(const Accessible& button) override {
        const auto comesThere = [&] {
            const bool isThere = waitUntil([&] { return story_.reader.isFocused(button); }, 200ms);
            if (!isThere) {
                story_.keyboard.strike({"TAB"});
            }
            return isThere;
        };
        story_.require(comesThere, "the Tab key does not lead to " + button.name);
        story_.keyboard.strike({"SPCE"});
    }

    void choose(const Accessible& row) override { show::type(story_.keyboard, row.name); }

    /// Starts the program by its entry once more, or sends away what is in front.
    void askForFront(xcb_window_t /*window*/, bool isTrusted) override {
        if (isTrusted) {
            auto command = argumentsInEntry();
            command.insert(command.begin(), HFP_PROGRAM);
            story_.run(command);
        } else {
            story_.keyboard.strike({"LALT", "ESC"});
        }
    }

    void chooseEnglish() override {
        tray_->openMenu();
        tray_->openLanguages();
        tray_->chooseEnglish();
    }

    void chooseManage() override { chooseBy("m"); }
    void chooseQuit() override { chooseBy("q"); }

private:
    void chooseBy(std::string_view letter) {
        tray_->openMenu();
        show::type(story_.keyboard, letter);
    }
};

class ByMouse final : public AtOlderTray {
public:
    using AtOlderTray::AtOlderTray;

    void press(const Accessible& button) override { story_.clickOn(button); }
    void choose(const Accessible& row) override { story_.clickOn(row); }

    /// Clicks the title where no window above covers it.
    void askForFront(xcb_window_t window, bool /*isTrusted*/) override {
        constexpr int frame = 30; // and more
        constexpr int buttons = 100;
        const auto place = story_.screen.placeOf(window);
        const auto stacked = story_.pager.stacking();
        const auto above = std::ranges::find(stacked, window);
        const int y = place.y - frame / 3;
        for (int x = place.x + buttons; x < place.x + place.width - buttons; x += frame) {
            const auto covers = [&](xcb_window_t other) {
                const auto [left, top, width, height] = story_.screen.placeOf(other);
                return other != window && x > left - frame && x < left + width + frame &&
                       y > top - frame && y < top + height + frame;
            };
            if (std::none_of(above, stacked.end(), covers)) {
                story_.mouse.click(x, y);
                return;
            }
        }
    }

    void chooseEnglish() override {
        click({.place = 3, .separatorsBefore = 1});
        story_.require([this] { return story_.screen.popups().size() == 2; },
                       "the languages do not show");
        const auto [x, y, width, height] = story_.screen.popups().back();
        story_.mouse.click(x + width / 4, y + 3 * height / 4); // the lower one of two
    }

    void chooseManage() override { click({.place = 0, .separatorsBefore = 0}); }
    void chooseQuit() override { click({.place = 5, .separatorsBefore = 2}); }

private:
    struct Entry {
        int place; ///< from the top, separators left out
        int separatorsBefore;
    };

    void click(const Entry& entry) {
        constexpr int entries = 6;
        constexpr int separators = 2;
        constexpr int separator = 7; // about as high
        tray_->openMenu();
        const auto [x, y, width, height] = story_.screen.popups().at(0);
        const int step = (height - separators * separator) / entries;
        story_.mouse.click(x + width / 4,
                           y + entry.separatorsBefore * separator + entry.place * step + step / 2);
    }
};

/// With the panel of newer desktops, whose menus are on the bus, too.
class ByAccessibilityBus final : public Means {
public:
    explicit ByAccessibilityBus(EditorStory& story) : story_(story), menu_(story.desktop) {}

    void press(const Accessible& button) override { story_.reader.press(button); }
    void choose(const Accessible& row) override { story_.reader.act(row, "Toggle"); }
    void askForFront(xcb_window_t window, bool /*isTrusted*/) override {
        story_.pager.activate(window);
    }

    void startPanel() override { menu_.startHost(); }
    void panelShowsSymbol() override {
        if (const auto shown = menu_.showsItem(); !shown) {
            throw std::runtime_error(shown.message());
        }
    }

    void chooseEnglish() override { menu_.choose("English"); }
    void chooseManage() override { menu_.choose("Manage Shortcuts"); }
    void chooseQuit() override { menu_.choose("Quit"); }

private:
    EditorStory& story_;
    StatusMenu menu_;
};

} // namespace

std::unique_ptr<Means> makeMeans(std::string_view name, EditorStory& story) {
    if (name == "keyboard") {
        return std::make_unique<ByKeyboard>(story);
    }
    if (name == "mouse") {
        return std::make_unique<ByMouse>(story);
    }
    return std::make_unique<ByAccessibilityBus>(story);
}

} // namespace hollowfernpike::test
