#pragma once

#include "platform/StatusBar.h"
#include "platform/SystemTray.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/qt/Application.h"
#include "platform/qt/status/StatusMenu.h"
#include "platform/qt/status/StatusNotifierHosts.h"
#include "platform/qt/status/TrayWindow.h"

#include <QObject>
#include <QString>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>
#include <optional>

namespace hollowfernpike::qt {

/// Our status item on the panel that there is: with a host of status notifier items, or as a window
/// in a tray if no such host appears within 1.5 s.
class StatusItem final : public QObject, public platform::StatusItem {
public:
    /// All outlive this. Null for the tray or the bus if there is none.
    StatusItem(Application& application, platform::SystemTray* tray,
               const freedesktop::SessionBus* bus);
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    ~StatusItem() override;

    void setImage(std::string_view symbolName, std::string_view accessibilityDescription) override;
    void setMenu(const platform::Menu& menu) override { menu_.setItems(menu); }
    void menuItemDidChange(const platform::MenuItem& item) override { menu_.updateCheckMark(item); }

private:
    bool isHostThere() const { return hosts_ && hosts_->isHostRegistered(); }
    void lookForHosts(const QDBusConnection& bus);
    void onHostNews();
    void onTrayNews();
    void showWithHost();
    void makeIcon();
    void showInTray();
    void applyImage();
    void tellApplication();

    Application& application_;
    platform::SystemTray* tray_;
    StatusMenu menu_;
    QString symbolName_;
    QString description_;
    QTimer grace_;
    std::unique_ptr<QSystemTrayIcon> icon_; ///< made with the first host, and kept for all later
    int number_ = 0;                        ///< of the icon, as in its name on the bus
    std::unique_ptr<TrayWindow> window_;
    std::optional<StatusNotifierHosts> hosts_;
    std::unique_ptr<platform::Subscription> trayWatch_;
};

} // namespace hollowfernpike::qt
