#include "platform/qt/status/StatusBar.h"

#include "platform/qt/status/StatusMenu.h"
#include "platform/qt/status/StatusNotifierHosts.h"
#include "platform/qt/status/StatusSymbol.h"
#include "platform/qt/status/TrayWindow.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusConnection>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace hollowfernpike::qt {

namespace {

using namespace std::chrono_literals;

// How long a host is waited for before a tray is used: a panel may take this long to bring up its
// host, and may offer a tray as well.
constexpr auto grace = 1500ms;

/// The toolkit opens a connection for each item, named like the item on the bus, and would reuse it
/// even if it is dead.
void forgetConnectionOf(int item) {
    QDBusConnection::disconnectFromBus(QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                                           .arg(QCoreApplication::applicationPid())
                                           .arg(item));
}

class StatusItem final : public QObject, public platform::StatusItem {
public:
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

StatusItem::StatusItem(Application& application, platform::SystemTray* tray,
                       const freedesktop::SessionBus* bus)
    : application_(application), tray_(tray),
      menu_([this](const platform::MenuItem& item) { application_.sendAction(item); }) {
    grace_.setSingleShot(true);
    grace_.setInterval(grace);
    QObject::connect(&grace_, &QTimer::timeout, this, &StatusItem::showInTray);
    if (bus != nullptr) {
        QObject::connect(bus, &freedesktop::SessionBus::returned, this,
                         [this, bus] { lookForHosts(bus->connection()); });
        lookForHosts(bus->connection());
    }
    if (tray_ != nullptr) {
        trayWatch_ = tray_->watch([this] { onTrayNews(); });
    }
    grace_.start();
}

StatusItem::~StatusItem() {
    application_.setStatusItemShown(false);
}

void StatusItem::setImage(std::string_view symbolName, std::string_view accessibilityDescription) {
    symbolName_ = QString::fromUtf8(symbolName);
    description_ = QString::fromUtf8(accessibilityDescription);
    applyImage();
}

// The icon is kept and only hidden: it connects to the present bus when it is shown again. A new
// icon would fail: newer toolkit versions ask the bus of the program's start for hosts, and that
// bus may have ended.
void StatusItem::lookForHosts(const QDBusConnection& bus) {
    if (icon_) {
        icon_->hide();
        forgetConnectionOf(number_);
    }
    hosts_.emplace(bus, [this] { onHostNews(); });
}

void StatusItem::onHostNews() {
    if (isHostThere()) {
        grace_.stop();
        window_.reset();
        showWithHost();
    } else if (!window_) {
        grace_.start();
    }
    tellApplication();
}

void StatusItem::onTrayNews() {
    window_.reset();
    if (!isHostThere()) {
        grace_.start();
    }
    tellApplication();
}

// The icon is not made before there is a host: with its first icon the toolkit decides for good
// whether it uses hosts. From then on it follows them by itself.
void StatusItem::showWithHost() {
    if (!icon_) {
        makeIcon();
    }
    icon_->show();
}

void StatusItem::makeIcon() {
    static int numberOfIcons = 0;
    number_ = ++numberOfIcons;
    icon_ = std::make_unique<QSystemTrayIcon>();
    icon_->setContextMenu(&menu_.widget());
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, this,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             menu_.popUp(QCursor::pos());
                         }
                     });
    applyImage();
}

void StatusItem::showInTray() {
    if (tray_ == nullptr || !tray_->isThere()) {
        return;
    }
    window_ = std::make_unique<TrayWindow>(*tray_, [this](QPoint where) { menu_.popUp(where); });
    applyImage();
    tellApplication();
}

void StatusItem::applyImage() {
    const QIcon drawing = statusSymbol(symbolName_);
    if (window_) {
        window_->setImage(drawing, description_);
    }
    if (icon_) {
        icon_->setIcon(drawing);
        icon_->setToolTip(description_);
    }
}

void StatusItem::tellApplication() {
    application_.setStatusItemShown(isHostThere() || window_ != nullptr);
}

} // namespace

std::unique_ptr<platform::StatusItem> StatusBar::createStatusItem() {
    return std::make_unique<StatusItem>(application_, tray_, bus_);
}

} // namespace hollowfernpike::qt
