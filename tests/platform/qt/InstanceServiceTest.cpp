#include "platform/freedesktop/instance/InstanceService.h"

#include "platform/qt/QtEventLoop.h"
#include "support/ChildProcess.h"
#include "support/SessionBus.h"

#include <QDBusConnection>

#include <csignal>
#include <cstdlib>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using freedesktop::InstanceRequest;
using freedesktop::InstanceService;
using testing::HasSubstr;
using testing::SizeIs;

constexpr auto busName = "app.hollowfernpike.Hollowfernpike";

class InstanceServiceTest : public testing::Test {
protected:
    /// Calls a method of the service from another process, and waits for its end.
    std::unique_ptr<test::ChildProcess> call(const std::string& method,
                                             std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(),
                         {"gdbus", "call", "--session", "--timeout", "5", "--dest", busName,
                          "--object-path", "/app/hollowfernpike/Hollowfernpike", "--method",
                          method});
        auto caller = std::make_unique<test::ChildProcess>(
            arguments, test::Environment{{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}});
        EXPECT_TRUE(loop_.runUntil([&] { return caller->hasEnded(); }));
        return caller;
    }

    void listen() {
        service_.listen([this](const InstanceRequest& request) { requests_.push_back(request); });
    }

    std::vector<InstanceRequest> requests_;
    test::SessionBus bus_;
    const int environment_ = ::setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
    test::EventLoop loop_;
    freedesktop::SessionBus connection_;
    InstanceService service_{busName, "show", connection_};
};

TEST_F(InstanceServiceTest, ActivateArrivesWithItsStartupIdentifier) {
    ASSERT_EQ(service_.publish(), InstanceService::Outcome::owned);
    listen();
    call("org.freedesktop.Application.Activate", {"{'desktop-startup-id': <'abc_TIME42'>}"});
    ASSERT_TRUE(loop_.runUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_.front().action, "show");
    EXPECT_EQ(requests_.front().startupIdentifier, "abc_TIME42");
}

TEST_F(InstanceServiceTest, WhatComesBeforeAnybodyListensWaits) {
    ASSERT_EQ(service_.publish(), InstanceService::Outcome::owned);
    call("org.freedesktop.Application.ActivateAction", {"import", "[]", "{}"});
    EXPECT_THAT(requests_, SizeIs(0));
    listen();
    EXPECT_THAT(requests_, SizeIs(0)) << "not from within the call";
    EXPECT_TRUE(loop_.runUntil([&] { return requests_.size() == 1; }));
}

TEST_F(InstanceServiceTest, AnActivationTokenWillDo) {
    service_.publish();
    listen();
    call("org.freedesktop.Application.Activate", {"{'activation-token': <'token'>}"});
    ASSERT_TRUE(loop_.runUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_.front().startupIdentifier, "token");
}

TEST_F(InstanceServiceTest, AnActionArrivesByItsName) {
    service_.publish();
    listen();
    call("org.freedesktop.Application.ActivateAction", {"export-shortcuts", "[]", "{}"});
    ASSERT_TRUE(loop_.runUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_.front().action, "export-shortcuts");
    EXPECT_EQ(requests_.front().startupIdentifier, "");
}

TEST_F(InstanceServiceTest, OpeningFilesIsAnActivation) {
    service_.publish();
    listen();
    call("org.freedesktop.Application.Open", {"['file:///tmp/x']", "{}"});
    ASSERT_TRUE(loop_.runUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_.front().action, "show");
}

TEST_F(InstanceServiceTest, WhatIsNoRequestIsRefused) {
    service_.publish();
    listen();
    const auto unknown = call("org.freedesktop.Application.Format");
    EXPECT_NE(unknown->wait(), 0);
    EXPECT_THAT(unknown->errors(), HasSubstr("DBus.Error.Unknown"));
    EXPECT_NE(call("org.freedesktop.Application.Activate", {"'text'"})->wait(), 0);
    call("org.freedesktop.Application.Activate", {"{}"});
    ASSERT_TRUE(loop_.runUntil([&] { return !requests_.empty(); }));
    EXPECT_THAT(requests_, SizeIs(1));
}

TEST_F(InstanceServiceTest, TheInterfaceIsDescribed) {
    service_.publish();
    listen();
    const auto description = call("org.freedesktop.DBus.Introspectable.Introspect");
    EXPECT_THAT(description->output(), HasSubstr("org.freedesktop.Application"));
    EXPECT_THAT(description->output(), HasSubstr("ActivateAction"));
}

TEST_F(InstanceServiceTest, ANameThatIsTakenIsLeftToItsOwner) {
    auto owner = QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), "owner");
    ASSERT_TRUE(owner.registerService(busName));
    EXPECT_EQ(service_.publish(), InstanceService::Outcome::taken);
    EXPECT_FALSE(service_.handOver({"show", ""})) << "this owner does not answer";
}

TEST_F(InstanceServiceTest, KnowsWhetherTheNameIsWithAProcessOfThisProgram) {
    auto owner = QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), "owner");
    ASSERT_TRUE(owner.registerService(busName));
    EXPECT_TRUE(service_.isOwnerOneOfUs());
    ASSERT_TRUE(owner.unregisterService(busName));
    EXPECT_FALSE(service_.isOwnerOneOfUs()) << "nobody has it";
}

TEST_F(InstanceServiceTest, WithoutABusThereIsNoService) {
    bus_.daemon().signal(SIGKILL);
    ASSERT_TRUE(bus_.daemon().wait());
    const freedesktop::SessionBus dead;
    InstanceService late(busName, "show", dead);
    EXPECT_EQ(late.publish(), InstanceService::Outcome::unavailable);
    EXPECT_FALSE(late.handOver({"show", ""}));
}

} // namespace

} // namespace hollowfernpike
