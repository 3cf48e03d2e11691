#include "platform/qt/StatusBar.h"

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include <map>

namespace hollowfernpike::qt {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

class StatusItem final : public platform::StatusItem {
public:
    explicit StatusItem(Application& application) : application_(application) {}

    void setImage(std::string_view symbolName, std::string_view accessibilityDescription) override {
        icon_.setIcon(QIcon(":/symbols/" + text(symbolName) + ".svg"));
        icon_.setToolTip(text(accessibilityDescription));
        icon_.show();
    }

    void setMenu(const platform::Menu& menu) override {
        auto replacement = std::make_unique<QMenu>();
        actions_.clear();
        fill(*replacement, menu);
        icon_.setContextMenu(replacement.get());
        menu_ = std::move(replacement);
    }

    void menuItemDidChange(const platform::MenuItem& item) override {
        actions_.at(&item)->setChecked(*item.isOn);
    }

private:
    void fill(QMenu& menu, const platform::Menu& items) {
        for (const auto& item : items) {
            if (item->isSeparator) {
                menu.addSeparator();
            } else if (!item->submenu.empty()) {
                fill(*menu.addMenu(text(item->title)), item->submenu);
            } else {
                add(menu, item);
            }
        }
    }

    void add(QMenu& menu, const platform::MenuItemPointer& item) {
        QAction* action = menu.addAction(text(item->title));
        if (item->isOn) {
            action->setCheckable(true);
            action->setChecked(*item->isOn);
        }
        QObject::connect(action, &QAction::triggered, &menu,
                         [this, item] { application_.sendAction(*item); });
        actions_.emplace(item.get(), action);
    }

    Application& application_;
    QSystemTrayIcon icon_;
    std::unique_ptr<QMenu> menu_;
    std::map<const platform::MenuItem*, QAction*> actions_;
};

} // namespace

std::unique_ptr<platform::StatusItem> StatusBar::createStatusItem() {
    return std::make_unique<StatusItem>(application_);
}

} // namespace hollowfernpike::qt
