#include "platform/qt/status/StatusItemTest.h"

#include "platform/qt/status/TrayWindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QObject>
#include <QTimer>

namespace hollowfernpike::test {

namespace {

constexpr auto longerThanGrace = 2s;

xcb_connection_t* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

class TimerCount final : public QObject {
public:
    int fired = 0;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        fired += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
};

} // namespace

platform::MenuItemPointer menuItem(const std::string& title, const std::string& action) {
    auto item = std::make_shared<platform::MenuItem>();
    item->title = title;
    item->action = action;
    return item;
}

platform::MenuItemPointer separatorItem() {
    auto item = std::make_shared<platform::MenuItem>();
    item->isSeparator = true;
    return item;
}

StatusItemTest::StatusItemTest(const std::string& windowManager)
    : session(windowManager), manage(menuItem("Manage", "openMainWindow")),
      language(menuItem("Language", "")), japanese(menuItem("日本語", "changeLanguage")),
      english(menuItem("English", "changeLanguage")), login(menuItem("Login", "toggleLogin")),
      quit(menuItem("Quit", "quitApp")), tray(toolkitConnection(), runLoop),
      application(ownWindows), bar(application, &tray, &bus) {
    login->isOn = false;
    japanese->isOn = true;
    english->isOn = false;
    language->submenu = {japanese, english};
    quit->keyEquivalent = 'q';
    application.setDelegate(&delegate);
    application.setActivationPolicy(platform::ActivationPolicy::accessory);
    window.winId(); // makes the window that isShown() looks for in the task bar
}

void StatusItemTest::createItem() {
    item = bar.createStatusItem();
    item->setImage("keyboard", "Keys & more");
    item->setMenu({manage, separatorItem(), language, login, quit});
}

std::unique_ptr<ChildProcess> StatusItemTest::startHost() {
    auto host = session.desktop().start({HFP_STATUS_HOST, "--with-host"});
    EXPECT_TRUE(host->waitForLine("ready")) << host->errors();
    return host;
}

std::unique_ptr<ChildProcess> StatusItemTest::startWatcher() {
    auto watcher = session.desktop().start({HFP_STATUS_HOST});
    EXPECT_TRUE(watcher->waitForLine("ready")) << watcher->errors();
    return watcher;
}

std::string StatusItemTest::registeredItem(ChildProcess& panel) {
    const std::string prefix = "item ";
    std::optional<std::string> line;
    const auto hasLine = [&] {
        line = panel.waitForLine(prefix, 0ms);
        return line.has_value();
    };
    EXPECT_TRUE(session.runUntil(hasLine)) << panel.output() << panel.errors();
    return line.value_or(prefix).substr(prefix.size());
}

void StatusItemTest::waitPastGrace() {
    bool past = false;
    QTimer::singleShot(longerThanGrace, &window, [&] { past = true; });
    EXPECT_TRUE(session.runUntil([&] { return past; }));
}

int StatusItemTest::timersWhileNothingHappens() {
    TimerCount count;
    QCoreApplication::instance()->installEventFilter(&count);
    waitPastGrace();
    return count.fired - 1; // without the timer that ends the waiting
}

QWidget* StatusItemTest::trayWindow() {
    for (auto* widget : QApplication::topLevelWidgets()) {
        if (dynamic_cast<qt::TrayWindow*>(widget) != nullptr) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace hollowfernpike::test
