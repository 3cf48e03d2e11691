#pragma once

#include "platform/qt/GuiSession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>

#include <string>
#include <vector>

namespace hollowfernpike::test {

/// An entry of a menu as it came over the bus.
struct BusMenuItem {
    int id = 0;
    QVariantMap properties;
    std::vector<BusMenuItem> children;

    /// Without the mark of its mnemonic.
    std::string label() const { return properties["label"].toString().remove('_').toStdString(); }
    bool isOn() const { return properties["toggle-state"].toInt() == 1; }
};

/// What a host of status notifier items does with an item, over a connection of its own. Every
/// question handles this process's events until the answer is there; a failed one throws.
class StatusItemClient {
public:
    /// `service` is the item's name on the bus.
    StatusItemClient(GuiSession& session, const std::string& service);
    StatusItemClient(const StatusItemClient&) = delete;
    StatusItemClient& operator=(const StatusItemClient&) = delete;
    ~StatusItemClient();

    QVariant property(const QString& name);

    /// A click on the item itself.
    void activate();

    /// The whole menu.
    BusMenuItem menu();

    /// The entry with this label, wherever in the menu. Throws if there is none.
    BusMenuItem entry(const std::string& label);

    void click(int id);

private:
    QDBusMessage ask(const QDBusMessage& question);
    QDBusMessage askMenu(const QString& method, const QVariantList& arguments);

    GuiSession& session_;
    QString service_;
    QDBusConnection bus_;
};

} // namespace hollowfernpike::test
