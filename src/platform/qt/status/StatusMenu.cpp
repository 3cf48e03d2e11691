#include "platform/qt/status/StatusMenu.h"

#include <QAction>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMetaObject>

#include <cctype>
#include <utility>

namespace hollowfernpike::qt {

namespace {

QKeySequence commandKey(char letter) {
    return {Qt::CTRL | Qt::Key(std::toupper(static_cast<unsigned char>(letter)))};
}

} // namespace

StatusMenu::StatusMenu(Choose choose) : choose_(std::move(choose)) {
    menu_.installEventFilter(this);
}

void StatusMenu::setItems(const platform::Menu& items) {
    menu_.hide();
    menu_.clear();
    qDeleteAll(menu_.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    actions_.clear();
    fill(menu_, items);
}

void StatusMenu::updateCheckMark(const platform::MenuItem& item) {
    actions_.at(&item)->setChecked(*item.isOn);
}

// A menu has the keyboard while it is open, so its key equivalents hold then and only then.
bool StatusMenu::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
        for (const auto& [item, action] : actions_) {
            if (!action->shortcut().isEmpty() && action->shortcut() == pressed) {
                menu_.hide();
                action->trigger();
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

void StatusMenu::fill(QMenu& menu, const platform::Menu& items) {
    for (const auto& item : items) {
        if (item->isSeparator) {
            menu.addSeparator();
        } else if (!item->submenu.empty()) {
            auto* submenu = menu.addMenu(QString::fromStdString(item->title));
            submenu->installEventFilter(this);
            fill(*submenu, item->submenu);
        } else {
            add(menu, item);
        }
    }
}

void StatusMenu::add(QMenu& menu, const platform::MenuItemPointer& item) {
    auto* action = menu.addAction(QString::fromStdString(item->title));
    if (item->keyEquivalent != '\0') {
        action->setShortcut(commandKey(item->keyEquivalent));
    }
    action->setCheckable(item->isOn.has_value());
    action->setChecked(item->isOn.value_or(false));
    QObject::connect(action, &QAction::triggered, this, [this, action, item] {
        action->setChecked(item->isOn.value_or(false)); // the toolkit has changed it already
        chooseLater(item);
    });
    actions_.emplace(item.get(), action);
}

void StatusMenu::chooseLater(const platform::MenuItemPointer& item) {
    const auto choose = [this, item] { choose_(*item); };
    QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
}

} // namespace hollowfernpike::qt
