#include "platform/qt/status/StatusItemClient.h"
#include "platform/qt/status/StatusItemTest.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using test::StatusItemClient;

/// The third part of the tooltip structure: icon name, icons, title, text.
std::string titleOfToolTip(const QVariant& property) {
    const auto argument = property.value<QDBusArgument>();
    QString iconName;
    QString title;
    argument.beginStructure();
    argument >> iconName;
    argument.beginArray();
    while (!argument.atEnd()) {
        argument.asVariant();
    }
    argument.endArray();
    argument >> title;
    return title.toStdString();
}

/// The widths of the pictures in a property a(iiay).
std::vector<int> widthsOf(const QVariant& property) {
    const auto argument = property.value<QDBusArgument>();
    std::vector<int> widths;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        argument.beginStructure();
        argument >> width >> height >> pixels;
        argument.endStructure();
        EXPECT_EQ(pixels.size(), 4 * width * height);
        widths.push_back(width);
    }
    argument.endArray();
    return widths;
}

class StatusItemOnHostTest : public test::StatusItemTest {
protected:
    /// A host that registers with the watcher, as panels do whose watcher is a program of its own.
    class OtherHost {
    public:
        explicit OtherHost(test::GuiSession& session)
            : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "other host")) {
            auto call = QDBusMessage::createMethodCall(
                "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierHost");
            call << bus_.baseService();
            const auto answer = bus_.asyncCall(call);
            EXPECT_TRUE(session.runUntil([&] { return answer.isFinished(); }));
            EXPECT_FALSE(answer.isError());
        }
        OtherHost(const OtherHost&) = delete;
        OtherHost& operator=(const OtherHost&) = delete;
        ~OtherHost() { QDBusConnection::disconnectFromBus("other host"); }

    private:
        QDBusConnection bus_;
    };
};

TEST_F(StatusItemOnHostTest, AppearsOnAHostThatIsThereAlready) {
    const auto host = startHost();
    createItem();
    StatusItemClient client(session, registeredItem(*host));
    EXPECT_TRUE(isShown());
    EXPECT_EQ(client.property("Id").toString(), "Hollowfernpike");
    EXPECT_EQ(client.property("Title").toString(), "Hollowfernpike");
    EXPECT_EQ(client.property("Category").toString(), "ApplicationStatus");
    EXPECT_EQ(client.property("Status").toString(), "Active");
    EXPECT_EQ(titleOfToolTip(client.property("ToolTip")), "Keys & more");
}

TEST_F(StatusItemOnHostTest, IsNotShownBeforeAHostSaysSo) {
    createItem();
    EXPECT_FALSE(isShown());
    waitPastGrace();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(trayWindow(), nullptr);
}

TEST_F(StatusItemOnHostTest, AppearsOnAHostThatComesLongAfterIt) {
    createItem();
    waitPastGrace();
    const auto host = startHost();
    StatusItemClient client(session, registeredItem(*host));
    EXPECT_EQ(client.entry("Quit").label(), "Quit");
    EXPECT_TRUE(isShown());
}

TEST_F(StatusItemOnHostTest, WaitsForAHostWhereThereIsOnlyAWatcher) {
    const auto watcher = startWatcher();
    createItem();
    waitPastGrace();
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(watcher->waitForLine("item ", std::chrono::milliseconds{0}));

    const OtherHost host(session);
    EXPECT_NE(registeredItem(*watcher), "");
    EXPECT_TRUE(session.runUntil([&] { return isShown(); }));
}

TEST_F(StatusItemOnHostTest, FollowsAHostThatLeavesItsWatcherAndReturns) {
    const auto watcher = startWatcher();
    auto host = std::make_unique<OtherHost>(session);
    createItem();
    EXPECT_TRUE(session.runUntil([&] { return isShown(); }));
    host.reset();
    EXPECT_TRUE(session.runUntil([&] { return !isShown(); }));
    host = std::make_unique<OtherHost>(session);
    EXPECT_TRUE(session.runUntil([&] { return isShown(); }));
}

TEST_F(StatusItemOnHostTest, AppearsAgainAfterThePanelHasCrashed) {
    auto host = startHost();
    createItem();
    registeredItem(*host);
    for (int round = 0; round < 2; ++round) {
        host->signal(SIGKILL);
        EXPECT_TRUE(session.runUntil([&] { return !isShown(); }));
        host = startHost();
        StatusItemClient client(session, registeredItem(*host));
        EXPECT_TRUE(session.runUntil([&] { return isShown(); }));
        EXPECT_EQ(client.entry("Manage").label(), "Manage");
    }
}

TEST_F(StatusItemOnHostTest, IsNotShownAnyMoreWhenItIsGone) {
    const auto host = startHost();
    createItem();
    registeredItem(*host);
    item.reset();
    EXPECT_FALSE(isShown());
}

TEST_F(StatusItemOnHostTest, TouchesNoBusWhereItIsTold) {
    const auto host = startHost();
    qt::StatusBar withoutBus(application, &tray, nullptr);
    item = withoutBus.createStatusItem();
    item->setImage("keyboard", "Keys & more");
    waitPastGrace();
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(host->waitForLine("item ", std::chrono::milliseconds{0}));
}

TEST_F(StatusItemOnHostTest, LetsNoTimerRunWhileItIsShown) {
    const auto host = startHost();
    createItem();
    registeredItem(*host);
    EXPECT_EQ(timersWhileNothingHappens(), 0);
}

TEST_F(StatusItemOnHostTest, LetsNoTimerRunWhileNobodyShowsIt) {
    createItem();
    waitPastGrace();
    EXPECT_EQ(timersWhileNothingHappens(), 0);
}

TEST_F(StatusItemOnHostTest, SendsItsOwnDrawingInTheSizesOfPanels) {
    const auto host = startHost();
    createItem();
    StatusItemClient client(session, registeredItem(*host));
    EXPECT_EQ(client.property("IconName").toString(), "");
    EXPECT_THAT(widthsOf(client.property("IconPixmap")), testing::IsSupersetOf({16, 22, 24, 32}));
}

TEST_F(StatusItemOnHostTest, NamesTheSymbolThatIsInstalledForIt) {
    const auto icons = session.desktop().dataHome() / "icons/hicolor";
    std::filesystem::create_directories(icons / "symbolic/apps");
    std::ofstream(icons / "symbolic/apps/app.hollowfernpike.Hollowfernpike-symbolic.svg")
        << R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16"/>)";
    const auto host = startHost();
    createItem();
    StatusItemClient client(session, registeredItem(*host));
    EXPECT_EQ(client.property("IconName").toString(), "app.hollowfernpike.Hollowfernpike-symbolic");
}

} // namespace
} // namespace hollowfernpike
