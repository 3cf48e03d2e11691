#include "show/Panel.h"

#include "show/Camera.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <fstream>

namespace hollowfernpike::show {

namespace {

using namespace std::chrono_literals;
using test::waitUntil;

std::string settings(int scale) {
    const auto pixels = [scale](int count) { return std::to_string(count * scale); };
    return "rounded = 0\nborder_width = 0\nbackground_color = #2a2e32 100\n"
           "panel_items = S\npanel_shrink = 1\npanel_position = top right horizontal\n"
           "panel_size = 200 " +
           pixels(panelHeight) +
           "\npanel_background_id = 1\npanel_layer = top\nstrut_policy = none\nwm_menu = 0\n"
           "systray_padding = " +
           pixels(8) + ' ' + pixels(4) + ' ' + pixels(8) + "\nsystray_icon_size = " + pixels(22) +
           '\n';
}

} // namespace

Panel::Panel(test::Story& story, test::WindowUser& user, int scale) : story_(story), user_(user) {
    const auto file = story_.desktop.home() / ".config/tint2/tint2rc";
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << settings(scale);
    panel_ = story_.desktop.start({"tint2", "-c", file});
}

void Panel::showsSymbol() {
    const auto isPainted = [this] {
        const auto [x, y, width, height] = user_.screen.statusSymbol();
        const QRect symbol(x, y, width, height);
        const auto screen = glance(story_.desktop.display());
        return width > 0 && !cropped(screen, symbol, screen.pixel(x, y), 0).isNull();
    };
    user_.require(isPainted, "the panel does not show the symbol: " + panel_->errors());
}

// After another application has come to the front, the toolkit notices a tenth of a second late and
// closes what has been opened meanwhile; so the menu has to stay open for a while.
void Panel::openMenu() {
    showsSymbol();
    const auto symbol = user_.screen.statusSymbol();
    const auto staysOpen = [&] {
        user_.mouse.click(symbol.x + symbol.width / 2, symbol.y + symbol.height / 2);
        return waitUntil([this] { return user_.screen.popups().size() == 1; }, 2s) &&
               !waitUntil([this] { return user_.screen.popups().empty(); }, 300ms);
    };
    user_.require(staysOpen, "the menu does not open");
}

void Panel::openLanguages() {
    goToFirst();
    strike({"DOWN", "DOWN", "DOWN", "RGHT"});
    user_.require([this] { return user_.screen.popups().size() == 2; },
                  "the languages do not show");
}

void Panel::chooseEnglish() {
    strike({"DOWN", "RTRN"});
    isClosed();
}

void Panel::closeMenu() {
    while (!user_.screen.popups().empty()) {
        const auto open = user_.screen.popups().size();
        strike({"ESC"});
        user_.require([&] { return user_.screen.popups().size() < open; },
                      "the menu does not close");
    }
}

void Panel::choose(int entry) {
    openMenu();
    goToFirst();
    strike(std::vector<std::string>(static_cast<std::size_t>(entry), "DOWN"));
    strike({"RTRN"});
    isClosed();
}

void Panel::strike(const std::vector<std::string>& keys) {
    for (const auto& key : keys) {
        story_.keyboard.strike({key});
    }
}

void Panel::isClosed() {
    user_.require([this] { return user_.screen.popups().empty(); }, "the menu stays open");
}

void Panel::goToFirst() {
    const auto& display = story_.desktop.display();
    const auto before = picture(display);
    const auto menu = user_.screen.popups().at(0);
    user_.mouse.moveTo(menu.x + menu.width / 2, menu.y + panelHeight / 2);
    user_.require([&] { return glance(display) != before; }, "no entry of the menu lights up");
}

} // namespace hollowfernpike::show
