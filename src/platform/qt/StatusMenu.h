#pragma once

#include "platform/Menu.h"

#include <QMenu>
#include <QObject>
#include <QPoint>

#include <functional>
#include <map>
#include <memory>

namespace hollowfernpike::qt {

/// The menu of a status item as the toolkit shows it, and hosts of status items read it.
class StatusMenu final : public QObject {
public:
    using Choose = std::function<void(const platform::MenuItem& item)>;

    /// `choose` is told of every item that the user chooses, once each, with nothing of the menu
    /// on the stack: it may run an event loop and replace the items.
    explicit StatusMenu(Choose choose);

    /// Replaces all items. An open menu closes.
    void setItems(const platform::Menu& items);

    /// Shows the check mark of one of the present items as it is now.
    void updateCheckMark(const platform::MenuItem& item);

    void popUp(QPoint position) { menu_.popup(position); }

    QMenu& widget() { return menu_; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void fill(QMenu& menu, const platform::Menu& items);
    void add(QMenu& menu, const platform::MenuItemPointer& item);
    void chooseLater(const platform::MenuItemPointer& item);

    Choose choose_;
    QMenu menu_;
    std::map<const platform::MenuItem*, QAction*> actions_;
};

} // namespace hollowfernpike::qt
