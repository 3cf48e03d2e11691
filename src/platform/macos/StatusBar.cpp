#include "platform/macos/StatusBar.h"

#include "platform/qt/status/StatusMenu.h"
#include "platform/qt/status/StatusSymbol.h"

#include <QSystemTrayIcon>

namespace hollowfernpike::macos {

namespace {

class StatusItem final : public platform::StatusItem {
public:
    explicit StatusItem(qt::Application& application)
        : menu_([&application](const platform::MenuItem& item) { application.sendAction(item); }) {
        icon_.setContextMenu(&menu_.widget());
    }

    void setImage(std::string_view symbolName, std::string_view accessibilityDescription) override {
        QIcon symbol = qt::statusSymbol(QString::fromUtf8(symbolName));
        symbol.setIsMask(true); // the system draws it in the menu bar's colour
        icon_.setIcon(symbol);
        icon_.setToolTip(QString::fromUtf8(accessibilityDescription));
        icon_.show();
    }

    void setMenu(const platform::Menu& menu) override { menu_.setItems(menu); }
    void menuItemDidChange(const platform::MenuItem& item) override { menu_.updateCheckMark(item); }

private:
    qt::StatusMenu menu_;
    QSystemTrayIcon icon_;
};

} // namespace

std::unique_ptr<platform::StatusItem> StatusBar::createStatusItem() {
    return std::make_unique<StatusItem>(application_);
}

} // namespace hollowfernpike::macos
