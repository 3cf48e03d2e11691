#include "platform/portal/ShortcutsPortal.h"

#include "platform/portal/FakePortal.h"
#include "platform/qt/QtEventLoop.h"
#include "support/SessionBus.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <vector>

#include <QObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike::portal {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

PortalShortcut shortcutOf(const QString& name) {
    return {.name = name, .label = "Label", .trigger = "CTRL+" + name};
}

TEST(HiddenBusTest, KeysAreBoundOnABusThatAnswersAfterTheStart) {
    const test::SessionBus daemon;
    const auto& address = daemon.address();
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null", 1); // as a silent one is hidden
    const test::FakePortal portal(QString::fromStdString(address));
    test::EventLoop loop;
    freedesktop::SessionBus bus(address, false);
    ShortcutsPortal shortcuts(bus);
    QStringList bound;
    QObject::connect(&shortcuts, &ShortcutsPortal::bound, &shortcuts,
                     [&bound](const QStringList& names) { bound = names; });
    shortcuts.bind({shortcutOf("a")});
    EXPECT_TRUE(loop.runUntil([&bound] { return bound == QStringList{"a"}; }));
}

/// Each test has a process of its own, and with it the toolkit's connection to this bus.
class ShortcutsPortalTest : public testing::Test {
protected:
    ShortcutsPortalTest() {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon_.address().c_str(), 1);
        bus_ = std::make_unique<freedesktop::SessionBus>();
        shortcuts_ = std::make_unique<ShortcutsPortal>(*bus_);
        portal_ = std::make_unique<test::FakePortal>(QString::fromStdString(daemon_.address()));
        QObject::connect(shortcuts_.get(), &ShortcutsPortal::bound, &context_,
                         [this](const QStringList& names) { bound_.push_back(names); });
        QObject::connect(shortcuts_.get(), &ShortcutsPortal::lost, &context_, [this] { ++lost_; });
    }

    bool hasCalled(const QString& method, qsizetype count = 1) {
        return loop_.runUntil([&] { return portal_->methods().count(method) >= count; });
    }

    bool hasBound(const QStringList& names) {
        return loop_.runUntil([&] { return !bound_.empty() && bound_.back() == names; });
    }

    const PortalShortcut a_ = shortcutOf("a");
    const PortalShortcut b_ = shortcutOf("b");
    test::SessionBus daemon_;
    test::EventLoop loop_;
    std::unique_ptr<freedesktop::SessionBus> bus_;
    std::unique_ptr<ShortcutsPortal> shortcuts_;
    std::unique_ptr<test::FakePortal> portal_;
    QObject context_;
    std::vector<QStringList> bound_;
    int lost_ = 0;
};

TEST_F(ShortcutsPortalTest, AChangeWhileThePortalIsToldOfUsIsBoundOnce) {
    portal_->hold("Registry.Register");
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("Registry.Register"));
    shortcuts_->bind({a_, b_});
    portal_->letGo();
    ASSERT_TRUE(hasBound({"a", "b"}));
    EXPECT_THAT(portal_->methods(),
                ElementsAre("Registry.Register", "GlobalShortcuts.CreateSession",
                            "GlobalShortcuts.BindShortcuts"));
    EXPECT_EQ(bound_.size(), 1U);
}

TEST_F(ShortcutsPortalTest, AChangeWhileASessionIsCreatedIsBoundInThatSession) {
    portal_->hold("GlobalShortcuts.CreateSession");
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("GlobalShortcuts.CreateSession"));
    shortcuts_->bind({b_});
    portal_->letGo();
    ASSERT_TRUE(hasBound({"b"}));
    EXPECT_THAT(portal_->methods(),
                ElementsAre("Registry.Register", "GlobalShortcuts.CreateSession",
                            "GlobalShortcuts.BindShortcuts"));
    EXPECT_EQ(bound_.size(), 1U);
}

TEST_F(ShortcutsPortalTest, AChangeBeforeThePortalHasTakenTheRequestMakesANewSession) {
    portal_->hold("GlobalShortcuts.BindShortcuts");
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("GlobalShortcuts.BindShortcuts"));
    shortcuts_->bind({b_});
    portal_->letGo();
    ASSERT_TRUE(hasBound({"b"}));
    EXPECT_EQ(bound_.size(), 1U);
    EXPECT_EQ(portal_->methods().count("GlobalShortcuts.CreateSession"), 2);
    EXPECT_EQ(portal_->methods().count("Session.Close"), 1);
}

TEST_F(ShortcutsPortalTest, WhatIsGivenBackWhileASessionIsCreatedIsNotBound) {
    portal_->hold("GlobalShortcuts.CreateSession");
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("GlobalShortcuts.CreateSession"));
    shortcuts_->release();
    portal_->letGo();
    ASSERT_TRUE(hasCalled("Session.Close"));
    EXPECT_FALSE(portal_->methods().contains("GlobalShortcuts.BindShortcuts"));
}

TEST_F(ShortcutsPortalTest, AChangeWhileTheUserDecidesClosesTheDialogFirst) {
    portal_->openDialogs(true);
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("GlobalShortcuts.BindShortcuts"));
    portal_->openDialogs(false);
    shortcuts_->bind({b_});
    ASSERT_TRUE(hasBound({"b"}));
    EXPECT_THAT(portal_->methods(),
                ElementsAre("Registry.Register", "GlobalShortcuts.CreateSession",
                            "GlobalShortcuts.BindShortcuts", "Request.Close", "Session.Close",
                            "GlobalShortcuts.CreateSession", "GlobalShortcuts.BindShortcuts"));
    EXPECT_EQ(bound_.size(), 1U);
}

TEST_F(ShortcutsPortalTest, AFailureIsTriedAgainAfterGrowingPauses) {
    portal_->refuse("GlobalShortcuts.CreateSession", 2);
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasBound({})) << "the failure counts until the portal succeeds";
    ASSERT_TRUE(hasBound({"a"}));
    std::vector<std::chrono::steady_clock::time_point> times;
    for (const auto& call : portal_->calls()) {
        if (call.method == "GlobalShortcuts.CreateSession") {
            times.push_back(call.time);
        }
    }
    ASSERT_EQ(times.size(), 3U);
    EXPECT_GE(times[1] - times[0], 900ms);
    EXPECT_GE(times[2] - times[1], 1800ms);
}

TEST_F(ShortcutsPortalTest, ARefusalToBindIsTriedAgainInAnotherSession) {
    portal_->refuse("GlobalShortcuts.BindShortcuts", 1);
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasBound({"a"}));
    EXPECT_THAT(bound_, ElementsAre(QStringList{}, QStringList{"a"}));
    EXPECT_EQ(portal_->methods().count("Session.Close"), 1);
}

TEST_F(ShortcutsPortalTest, APortalThatEndsIsLostOnceAndBindsAgain) {
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasBound({"a"}));
    bound_.clear();
    portal_->restart();
    ASSERT_TRUE(loop_.runUntil([&] { return lost_ > 0; }));
    ASSERT_TRUE(hasBound({"a"}));
    EXPECT_EQ(lost_, 1);
    EXPECT_EQ(bound_.size(), 1U);
    EXPECT_EQ(portal_->methods().count("Registry.Register"), 2);
    EXPECT_EQ(portal_->methods().count("GlobalShortcuts.BindShortcuts"), 2);
}

TEST_F(ShortcutsPortalTest, APortalThatEndsWhileASessionIsCreatedIsAskedAgain) {
    portal_->hold("GlobalShortcuts.CreateSession");
    shortcuts_->bind({a_});
    ASSERT_TRUE(hasCalled("GlobalShortcuts.CreateSession"));
    portal_->restart();
    ASSERT_TRUE(hasBound({"a"}));
    EXPECT_EQ(lost_, 1);
    EXPECT_EQ(bound_.size(), 1U);
    EXPECT_EQ(portal_->methods().count("Registry.Register"), 2);
}

TEST_F(ShortcutsPortalTest, AShortcutWithoutKeysIsNotGranted) {
    portal_->takeKeysOf("a");
    shortcuts_->bind({a_, b_});
    EXPECT_TRUE(hasBound({"b"}));
}

} // namespace

} // namespace hollowfernpike::portal
