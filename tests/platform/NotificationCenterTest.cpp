#include "platform/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::platform {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationCenterTest : public testing::Test {
protected:
    std::unique_ptr<Subscription> observe(std::string_view name, const std::string& observer) {
        return center.observe(name, [this, observer] { calls.push_back(observer); });
    }

    NotificationCenter center;
    std::vector<std::string> calls;
};

TEST_F(NotificationCenterTest, PostReturnsAfterTheObserverHasRun) {
    const auto subscription = observe("news", "observer");
    EXPECT_THAT(calls, IsEmpty());
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("observer"));
}

TEST_F(NotificationCenterTest, SeveralObserversOfANameRunInOrderOfRegistration) {
    const auto first = observe("news", "first");
    const auto second = observe("news", "second");
    const auto third = observe("news", "third");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first", "second", "third"));
}

TEST_F(NotificationCenterTest, OrderHoldsAfterAnEarlierObserverLeft) {
    auto first = observe("news", "first");
    const auto second = observe("news", "second");
    first.reset();
    const auto third = observe("news", "third");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("second", "third"));
}

TEST_F(NotificationCenterTest, OneHandlerRegisteredTwiceRunsTwice) {
    const auto once = observe("news", "observer");
    const auto again = observe("news", "observer");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("observer", "observer"));
}

TEST_F(NotificationCenterTest, EveryPostIsDelivered) {
    const auto subscription = observe("news", "observer");
    center.post("news");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("observer", "observer"));
}

TEST_F(NotificationCenterTest, ObserversOfOtherNamesAreNotCalled) {
    const auto subscription = observe("news", "observer");
    center.post("new");
    center.post("newsletter");
    center.post("News");
    center.post("");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(NotificationCenterTest, UnknownNameIsHarmless) {
    center.post("nobody listens");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(NotificationCenterTest, NameNeedNotOutliveTheRegistration) {
    auto name = std::make_unique<std::string>("a name too long to be kept in place");
    const auto subscription = observe(*name, "observer");
    name.reset();
    center.post("a name too long to be kept in place");
    EXPECT_THAT(calls, ElementsAre("observer"));
}

TEST_F(NotificationCenterTest, DestroyedSubscriptionIsCalledNoMore) {
    auto subscription = observe("news", "observer");
    subscription.reset();
    center.post("news");
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(NotificationCenterTest, DestroyedSubscriptionReleasesWhatItsHandlerHeld) {
    const auto held = std::make_shared<int>(1);
    auto subscription = center.observe("news", [held] {});
    EXPECT_EQ(held.use_count(), 2);
    subscription.reset();
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(NotificationCenterTest, ObserverMayRemoveItselfWhileItRuns) {
    std::unique_ptr<Subscription> subscription;
    subscription = center.observe("news", [this, &subscription, name = std::string{"observer"}] {
        subscription.reset();
        calls.push_back(name);
    });
    const auto next = observe("news", "next");
    center.post("news");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("observer", "next", "next"));
}

TEST_F(NotificationCenterTest, ObserverRemovedDuringAPostIsNotCalledAnyMore) {
    std::unique_ptr<Subscription> second;
    const auto first = center.observe("news", [this, &second] {
        calls.emplace_back("first");
        second.reset();
    });
    second = observe("news", "second");
    const auto third = observe("news", "third");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first", "third"));
}

TEST_F(NotificationCenterTest, ObserverAddedDuringAPostWaitsForTheNext) {
    std::vector<std::unique_ptr<Subscription>> added;
    const auto first = center.observe("news", [this, &added] {
        calls.emplace_back("first");
        if (added.empty()) {
            added.push_back(observe("news", "added"));
        }
    });
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first"));
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first", "first", "added"));
}

TEST_F(NotificationCenterTest, ManyObserversAddedDuringAPostDoNotDisturbIt) {
    std::vector<std::unique_ptr<Subscription>> added;
    const auto first = center.observe("news", [this, &added] {
        for (int count = 0; count < 100; ++count) {
            added.push_back(observe("other", "other"));
        }
        calls.emplace_back("first");
    });
    const auto last = observe("news", "last");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first", "last"));
}

TEST_F(NotificationCenterTest, PostInsideAPostIsDeliveredBeforeTheRestOfTheOuterOne) {
    const auto first = center.observe("outer", [this] {
        calls.emplace_back("first");
        center.post("inner");
    });
    const auto inner = observe("inner", "inner");
    const auto last = observe("outer", "last");
    center.post("outer");
    EXPECT_THAT(calls, ElementsAre("first", "inner", "last"));
}

TEST_F(NotificationCenterTest, PostOfTheSameNameInsideAPostReachesEveryObserver) {
    int depth = 0;
    const auto first = center.observe("news", [this, &depth] {
        calls.push_back("first " + std::to_string(depth));
        if (depth == 0) {
            ++depth;
            center.post("news");
        }
    });
    const auto last = observe("news", "last");
    center.post("news");
    EXPECT_THAT(calls, ElementsAre("first 0", "first 1", "last", "last"));
}

} // namespace

} // namespace hollowfernpike::platform
