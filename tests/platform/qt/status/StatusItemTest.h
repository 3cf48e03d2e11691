#pragma once

#include "platform/qt/Application.h"
#include "platform/qt/GuiSession.h"
#include "platform/qt/RecordingDelegate.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/status/StatusBar.h"
#include "platform/x11/tray/SystemTray.h"
#include "support/ChildProcess.h"
#include "support/fakes/FakeOwnWindows.h"

#include <QWidget>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// The status item of this process, made as the utility makes it, on a private desktop to which
/// panels come and go.
class StatusItemTest : public testing::Test {
protected:
    explicit StatusItemTest(const std::string& windowManager = {});

    void createItem();

    /// Starts a panel that is watcher and host, or a watcher alone, which waits for hosts.
    std::unique_ptr<ChildProcess> startHost();
    std::unique_ptr<ChildProcess> startWatcher();

    /// The bus name of the item that registers with this panel, after some waiting.
    std::string registeredItem(ChildProcess& panel);

    /// Whether the application has been told that its item shows: its windows leave the task bar.
    bool isShown() const {
        const auto told = ownWindows.inTaskBar.find(window.winId());
        return told != ownWindows.inTaskBar.end() && !told->second;
    }

    /// Waits past the grace period: an item that has not appeared by then only waits for news.
    void waitPastGrace();

    /// How many timers fire in some seconds in which nothing happens.
    int timersWhileNothingHappens();

    /// The window that an item in a tray is; null if there is none.
    static QWidget* trayWindow();

    GuiSession session;
    qt::RunLoop runLoop;
    RecordingDelegate delegate;
    platform::MenuItemPointer manage;
    platform::MenuItemPointer language;
    platform::MenuItemPointer japanese;
    platform::MenuItemPointer english;
    platform::MenuItemPointer login;
    platform::MenuItemPointer quit;

    FakeOwnWindows ownWindows;
    x11::SystemTray tray;
    qt::Application application;
    QWidget window;
    freedesktop::SessionBus bus;
    qt::StatusBar bar;
    std::unique_ptr<platform::StatusItem> item;
};

/// A menu item like those of the utility.
platform::MenuItemPointer menuItem(const std::string& title, const std::string& action);
platform::MenuItemPointer separatorItem();

} // namespace hollowfernpike::test
