#include "platform/freedesktop/bus/BusService.h"
#include "platform/freedesktop/launching/WorkspaceTest.h"
#include "platform/freedesktop/owners/RunningApplications.h"
#include "platform/qt/QtEventLoop.h"
#include "support/SessionBus.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>

#include <QLoggingCategory>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class BusLaunchTest : public WorkspaceTest {
protected:
    void useBus(const std::string& address) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }

    test::SessionBus& startBus() {
        bus_.emplace(test::Environment{{"XDG_DATA_HOME", (home_.path() / "data").string()}});
        useBus(bus_->address());
        return *bus_;
    }

    std::string addBusEntry(const std::string& name) {
        return home_.addEntry(name, home_.witness("stay", "by-program"), "DBusActivatable=true\n");
    }

    void request(const std::string& path) {
        answer_.reset();
        workspace().openApplication(path, {.activates = true},
                                    [this](const auto& result) { answer_ = result; });
    }

    platform::OpenResult openAndWait(const std::string& path) {
        request(path);
        EXPECT_TRUE(runUntil([this] { return answer_.has_value(); }));
        return answer_.value_or(platform::OpenResult{});
    }

    /// The first use connects it to the bus that the environment names then.
    Workspace& workspace() {
        if (!workspaceOnBus_) {
            if (!SessionBus::addressOfSession().empty()) {
                connection_.emplace();
            }
            workspaceOnBus_.emplace(entries_, processes_, windows_, feedback_,
                                    connection_ ? &*connection_ : nullptr, loop_, queue_);
        }
        return *workspaceOnBus_;
    }

    template <class Condition>
    bool runUntil(Condition condition) {
        return events_.runUntil(
            [&] { return loop_.runUntil(condition, std::chrono::milliseconds{0}); });
    }

    test::EventLoop events_;
    std::optional<test::SessionBus> bus_;
    std::optional<platform::OpenResult> answer_;

private:
    std::optional<SessionBus> connection_;
    std::optional<Workspace> workspaceOnBus_;
};

TEST_F(BusLaunchTest, AnApplicationThatListensIsActivatedWithTheStartUpIdentifier) {
    const test::BusService service(startBus().address(), "org.example.Active");
    const auto result = openAndWait(addBusEntry("org.example.Active"));
    EXPECT_FALSE(result.processIdentifier);
    EXPECT_FALSE(result.error);
    EXPECT_THAT(service.calls(),
                ElementsAre("/org/example/Active org.freedesktop.Application.Activate "
                            "({'activation-token': <'start-1_TIME4711'>, "
                            "'desktop-startup-id': <'start-1_TIME4711'>},)"));
    EXPECT_THAT(home_.witnesses(), IsEmpty());
}

TEST_F(BusLaunchTest, ARequestWhileTheBusIsAskedJoins) {
    const test::BusService service(startBus().address(), "org.example.Active");
    const auto path = addBusEntry("org.example.Active");
    int answers = 0;
    for (int press = 0; press < 5; ++press) {
        workspace().openApplication(path, {.activates = true}, [&](const auto&) { ++answers; });
    }
    EXPECT_EQ(answers, 0);
    EXPECT_TRUE(runUntil([&] { return answers == 5; }));
    EXPECT_THAT(service.calls(), SizeIs(1));
}

TEST_F(BusLaunchTest, ALaunchOverTheBusWithoutAWindowIsGivenUpAfterTenSeconds) {
    const test::BusService service(startBus().address(), "org.example.Active");
    const auto path = addBusEntry("org.example.Active");
    openAndWait(path);
    ++feedback_.holds;
    openAndWait(path);
    queue_.advance(LaunchesUnderWay::limit);
    EXPECT_THAT(feedback_.ended, SizeIs(1));
    EXPECT_FALSE(windows_.isWatched());
    openAndWait(path);
    EXPECT_THAT(service.calls(), SizeIs(1));
    ++feedback_.holds;
    openAndWait(path);
    EXPECT_THAT(service.calls(), SizeIs(2));
}

TEST_F(BusLaunchTest, AWindowAnswersBeforeTheBusDoes) {
    startBus();
    request(addBusEntry("org.example.Active"));
    EXPECT_FALSE(answer_);
    windows_.show({.process = std::nullopt,
                   .owner = {.name = "x", .bundleIdentifier = "org.example.Active"}});
    ASSERT_TRUE(answer_);
    EXPECT_FALSE(answer_->error);
}

TEST_F(BusLaunchTest, TheBusStartsAnApplicationThatDoesNotRunYet) {
    home_.write(home_.path() / "data/dbus-1/services/org.example.Started.service",
                "[D-BUS Service]\nName=org.example.Started\nExec=" +
                    home_.witness("stay", "by-bus") + '\n');
    startBus();
    request(addBusEntry("org.example.Started"));
    EXPECT_TRUE(runUntil([this] { return !home_.witnesses().empty(); }));
    EXPECT_EQ(home_.awaitWitnesses(1)[0].all("argument").back(), "by-bus");
}

TEST_F(BusLaunchTest, AnApplicationThatTheBusDoesNotKnowIsStartedByItsProgram) {
    startBus();
    const auto result = openAndWait(addBusEntry("org.example.Unknown"));
    const auto witness = home_.awaitWitnesses(1)[0];
    EXPECT_EQ(result.processIdentifier, witness.process);
    EXPECT_EQ(witness.variable("DESKTOP_STARTUP_ID"), "start-1_TIME4711");
}

TEST_F(BusLaunchTest, AnApplicationThatRefusesIsStartedByItsProgram) {
    const test::BusService service(startBus().address(), "org.example.Refusing");
    EXPECT_TRUE(openAndWait(addBusEntry("org.example.Refusing")).processIdentifier);
    EXPECT_THAT(service.calls(), SizeIs(1));
}

TEST_F(BusLaunchTest, WithoutAProgramARefusalIsAnError) {
    const test::BusService service(startBus().address(), "org.example.Refusing");
    const auto path = home_.write(home_.applications() / "org.example.Refusing.desktop",
                                  "[Desktop Entry]\nType=Application\nName=R\n"
                                  "DBusActivatable=true\n");
    const auto result = openAndWait(path);
    ASSERT_TRUE(result.error);
    EXPECT_THAT(result.error->english(), AllOf(HasSubstr(path), HasSubstr("cannot be started")));
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(BusLaunchTest, AFileNameThatIsNoBusNameIsStartedByItsProgram) {
    startBus();
    EXPECT_TRUE(openAndWait(addBusEntry("no-bus-name")).processIdentifier);
}

TEST_F(BusLaunchTest, AWindowlessInstanceIsActivatedOverTheBus) {
    const test::BusService service(startBus().address(), "org.example.Active");
    addBusEntry("org.example.Active");
    RunningApplications running(entries_, processes_, windows_, workspace());
    running.activate({.processIdentifier = 1, .bundleIdentifier = "org.example.Active"});
    EXPECT_TRUE(runUntil([&] { return service.calls().size() == 1; }));
    EXPECT_THAT(home_.witnesses(), IsEmpty());
}

TEST_F(BusLaunchTest, ABusThatIsGoneLeavesTheProgram) {
    useBus("unix:path=" + (home_.path() / "no-such-socket").string());
    EXPECT_TRUE(openAndWait(addBusEntry("org.example.Active")).processIdentifier);
}

TEST_F(BusLaunchTest, AServiceThatNeverAnswersGivesWayToTheProgram) {
    const auto& daemon = startBus().daemon();
    workspace();
    daemon.signal(SIGSTOP);
    request(addBusEntry("org.example.Active"));
    EXPECT_FALSE(answer_);
    queue_.advance(LaunchesUnderWay::limit);
    ASSERT_TRUE(answer_);
    const auto witness = home_.awaitWitnesses(1)[0];
    EXPECT_EQ(answer_->processIdentifier, witness.process);
    EXPECT_EQ(witness.all("argument").back(), "by-program");
    EXPECT_THAT(feedback_.ended, IsEmpty()) << "the program has a notice of its own start";
    queue_.advance(LaunchesUnderWay::limit);
    EXPECT_THAT(feedback_.ended, SizeIs(1));
}

TEST_F(BusLaunchTest, FailuresAreLogged) {
    static std::vector<std::string> lines;
    lines.clear();
    QLoggingCategory::setFilterRules("hollowfernpike.launching=true");
    const auto before = qInstallMessageHandler([](auto, const auto& context, const QString& text) {
        lines.push_back(std::string(context.category) + ": " + text.toStdString());
    });
    const auto& daemon = startBus().daemon();
    workspace();
    daemon.signal(SIGSTOP);
    const auto silent = home_.write(home_.applications() / "org.example.Silent.desktop",
                                    "[Desktop Entry]\nType=Application\nName=S\n"
                                    "DBusActivatable=true\n");
    request(silent);
    queue_.advance(LaunchesUnderWay::limit);
    const auto gone = (home_.applications() / "gone.desktop").string();
    openAndWait(gone);
    const auto lost = home_.addEntry("lost", "/no/such/program");
    openAndWait(lost);
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});
    for (const auto& path : {silent, gone, lost}) {
        EXPECT_THAT(lines, ::testing::Contains(
                               AllOf(StartsWith("hollowfernpike.launching: "), HasSubstr(path))));
    }
}

TEST_F(BusLaunchTest, ABusThatNeverAnswersHoldsNobodyUp) {
    const auto& daemon = startBus().daemon();
    workspace();
    daemon.signal(SIGSTOP);
    EXPECT_TRUE(openAndWait(home_.addEntry("plain", home_.witness("stay"))).processIdentifier);
    request(addBusEntry("org.example.Active"));
    EXPECT_FALSE(answer_);
}

TEST_F(BusLaunchTest, ABusThatEndsWhileItIsAskedLeavesTheProgram) {
    const auto& daemon = startBus().daemon();
    workspace();
    daemon.signal(SIGSTOP);
    request(addBusEntry("org.example.Active"));
    daemon.signal(SIGKILL);
    EXPECT_TRUE(runUntil([this] { return answer_.has_value(); }));
    EXPECT_TRUE(answer_->processIdentifier);
}

TEST_F(BusLaunchTest, WithoutASessionBusNoneIsStarted) {
    const auto stub = home_.write(home_.path() / "bin/dbus-launch",
                                  "#!/bin/sh\ntouch " + (home_.path() / "started").string() + '\n');
    std::filesystem::permissions(stub, std::filesystem::perms::owner_all);
    ::setenv("PATH", ((home_.path() / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
    ::setenv("DISPLAY", ":99", 1);
    for (const auto* address : {"", "autolaunch:", "disabled:", "autolaunch:scope=*user",
                                "tcp:host=127.0.0.1,port=9", "unix:path=/nowhere;autolaunch:"}) {
        useBus(address);
        EXPECT_EQ(SessionBus::addressOfSession(), "") << address;
    }
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(SessionBus::addressOfSession(), "");
    EXPECT_TRUE(openAndWait(addBusEntry("org.example.Active")).processIdentifier);
    EXPECT_TRUE(openAndWait(home_.addEntry("plain", home_.witness("stay"))).processIdentifier);
    home_.awaitWitnesses(2);
    EXPECT_FALSE(std::filesystem::exists(home_.path() / "started"));
}

TEST_F(BusLaunchTest, TheUsersBusIsKnownByItsSocketInTheRuntimeDirectory) {
    startBus();
    const auto& address = bus_->address();
    const auto path =
        address.substr(std::strlen("unix:path="), address.find(',') - std::strlen("unix:path="));
    ASSERT_THAT(address, StartsWith("unix:path="));
    std::filesystem::create_hard_link(path, home_.path() / "run/bus");
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    const test::BusService service(address, "org.example.Active");
    openAndWait(addBusEntry("org.example.Active"));
    EXPECT_THAT(service.calls(), SizeIs(1));
}

TEST_F(BusLaunchTest, AStartedProgramGetsAScopeOfItsOwn) {
    const test::BusService manager(startBus().address(), "org.freedesktop.systemd1");
    const auto result = openAndWait(home_.addEntry("my-app", home_.witness("stay"), "Comment=c\n"));
    EXPECT_TRUE(runUntil([&] { return !manager.calls().empty(); }));
    const auto number = std::to_string(*result.processIdentifier);
    EXPECT_THAT(manager.calls(),
                ElementsAre(AllOf(StartsWith("/org/freedesktop/systemd1 "
                                             "org.freedesktop.systemd1.Manager.StartTransientUnit "
                                             "('app-hollowfernpike-my\\\\x2dapp-" +
                                             number + ".scope', 'fail', "),
                                  HasSubstr("('PIDs', <[uint32 " + number + "]>)"),
                                  HasSubstr("('Slice', <'app.slice'>)"), EndsWith("], [])"))));
}

TEST_F(BusLaunchTest, AServiceManagerIsNotStartedForAScope) {
    home_.write(home_.path() / "data/dbus-1/services/org.freedesktop.systemd1.service",
                "[D-BUS Service]\nName=org.freedesktop.systemd1\nExec=" +
                    home_.witness("leave", "manager") + '\n');
    const test::BusService fence(startBus().address(), "org.example.Active");
    openAndWait(home_.addEntry("plain", home_.witness("stay", "program")));
    openAndWait(addBusEntry("org.example.Active"));
    EXPECT_THAT(fence.calls(), SizeIs(1));
    const auto witnesses = home_.awaitWitnesses(1);
    EXPECT_THAT(witnesses, SizeIs(1));
    EXPECT_EQ(witnesses[0].all("argument").back(), "program");
}

} // namespace

} // namespace hollowfernpike::freedesktop
