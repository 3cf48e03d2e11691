#include "platform/qt/status/StatusMenu.h"

#include <QAction>
#include <QActionGroup>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMetaObject>

#include <algorithm>
#include <cctype>
#include <utility>

namespace hollowfernpike::qt {

namespace {

QKeySequence commandKey(char letter) {
    return {Qt::CTRL | Qt::Key(std::toupper(static_cast<unsigned char>(letter)))};
}

bool isWritten(QChar letter) {
    return letter.unicode() < 0x80;
}

/// Whether the menu is in a language that every keyboard writes.
bool isWritten(const platform::Menu& items) {
    return std::ranges::any_of(items, [](const auto& item) {
        const auto title = QString::fromStdString(item->title);
        return !title.isEmpty() && std::ranges::all_of(title, [](QChar c) { return isWritten(c); });
    });
}

/// Marks a letter by which the item can be chosen in an open menu: the first one that no item above
/// it has and every keyboard writes.
QString withMnemonic(const QString& title, QString& taken) {
    for (qsizetype at = 0; at < title.size(); ++at) {
        const QChar letter = title[at].toUpper();
        if (isWritten(letter) && letter.isLetter() && !taken.contains(letter)) {
            taken += letter;
            return QString(title).insert(at, '&');
        }
    }
    return title;
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
    QString mnemonics;
    const bool hasMnemonics = isWritten(items);
    QActionGroup* choices = nullptr;
    for (const auto& item : items) {
        const auto plain = QString::fromStdString(item->title);
        const auto title = hasMnemonics ? withMnemonic(plain, mnemonics) : plain;
        if (item->isSeparator) {
            menu.addSeparator();
        } else if (!item->submenu.empty()) {
            auto* submenu = menu.addMenu(title);
            submenu->installEventFilter(this);
            fill(*submenu, item->submenu);
        } else {
            QAction& action = add(menu, item, title);
            if (item->isChoice) {
                choices = choices != nullptr ? choices : new QActionGroup(&menu);
                action.setActionGroup(choices);
            }
        }
    }
}

QAction& StatusMenu::add(QMenu& menu, const platform::MenuItemPointer& item, const QString& title) {
    auto* action = menu.addAction(title);
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
    return *action;
}

void StatusMenu::chooseLater(const platform::MenuItemPointer& item) {
    const auto choose = [this, item] { choose_(*item); };
    QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
}

} // namespace hollowfernpike::qt
