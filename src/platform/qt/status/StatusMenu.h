#pragma once

#include "platform/Menu.h"

#include <QMenu>
#include <QObject>
#include <QPoint>

#include <functional>
#include <map>
#include <memory>

namespace hollowfernpike::qt {

/// The menu of a status item: the toolkit shows it, and hosts of status items read it over the bus.
class StatusMenu final : public QObject {
public:
    using Choose = std::function<void(const platform::MenuItem& item)>;

    /// `choose` is called once for each item that the user chooses, from the main loop and not from
    /// within the menu: so it may run an event loop and replace the items.
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
    QAction& add(QMenu& menu, const platform::MenuItemPointer& item, const QString& title);
    void chooseLater(const platform::MenuItemPointer& item);

    Choose choose_;
    QMenu menu_;
    std::map<const platform::MenuItem*, QAction*> actions_;
};

} // namespace hollowfernpike::qt
