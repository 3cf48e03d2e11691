#include "contracts/Backend.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

using platform::KeyCombination;

constexpr auto controlAndOption = platform::event_flags::control | platform::event_flags::option;
constexpr auto everyModifier =
    controlAndOption | platform::event_flags::shift | platform::event_flags::command;

constexpr KeyCombination boundOne{.keyCode = 37, .modifierFlags = controlAndOption};
constexpr KeyCombination boundOther{.keyCode = 38, .modifierFlags = controlAndOption};

/// An active tap in the main loop that swallows what it is interested in, as far as it is told.
class SwallowingTap {
public:
    explicit SwallowingTap(Backend& backend)
        : tap_(backend.eventTaps().create(platform::EventTapOptions::active, &SwallowingTap::note,
                                          this)) {
        if (!tap_) {
            ADD_FAILURE() << "the desktop refuses an active tap";
            return;
        }
        source_ = tap_->createRunLoopSource();
        source_->addToMainRunLoop();
    }
    SwallowingTap(const SwallowingTap&) = delete;
    SwallowingTap& operator=(const SwallowingTap&) = delete;
    ~SwallowingTap() { end(); }

    platform::EventTap& tap() { return *tap_; }

    void watch(const std::vector<KeyCombination>& combinations) {
        interest_ = combinations;
        tap_->setInterest(combinations);
    }

    void end() {
        if (tap_) {
            tap_->enable(false);
            source_->removeFromMainRunLoop();
            source_.reset();
            tap_.reset();
        }
    }

    std::vector<KeyCombination> swallowed; ///< as the callback was told
    bool endsAtPress = false;

private:
    static const platform::KeyEvent* note(platform::EventTap* proxy, platform::EventType type,
                                          const platform::KeyEvent* event, void* userInfo) {
        auto& self = *static_cast<SwallowingTap*>(userInfo);
        if (type != platform::eventKeyDown) {
            proxy->enable(true);
            return event;
        }
        const KeyCombination pressed{.keyCode = platform::checkedKeyCode(*event),
                                     .modifierFlags = event->flags & everyModifier};
        if (std::ranges::find(self.interest_, pressed) == self.interest_.end()) {
            return event;
        }
        self.swallowed.push_back(pressed);
        if (self.endsAtPress) {
            self.end();
        }
        return nullptr;
    }

    std::vector<KeyCombination> interest_;
    std::unique_ptr<platform::EventTap> tap_;
    std::unique_ptr<platform::RunLoopSource> source_;
};

class EventTapsContractTest : public testing::Test {
protected:
    EventTapsContractTest() { backend_->open("Front"); }

    /// Whether the tap swallows this, and is told of each press once. Some desktops bind later than
    /// they are asked to.
    testing::AssertionResult swallows(SwallowingTap& tap, const KeyCombination& combination) {
        const bool isHidden = backend_->eventually([&] {
            tap.swallowed.clear();
            return !backend_->reachesFront(combination);
        });
        const bool isTold = backend_->eventually([&] { return !tap.swallowed.empty(); });
        if (isHidden && isTold && tap.swallowed == std::vector{combination}) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << (isHidden ? "swallowed" : "reaches the front")
                                           << ", told " << tap.swallowed.size() << " times";
    }

    /// Whether this reaches the application in front. Some desktops give back later than asked.
    bool passes(const KeyCombination& combination) {
        return backend_->eventually([&] { return backend_->reachesFront(combination); });
    }

    std::unique_ptr<Backend> backend_ = makeBackend();
    SwallowingTap tap_{*backend_};
};

TEST_F(EventTapsContractTest, SwallowsWhatItIsInterestedInAndTellsIt) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    EXPECT_TRUE(swallows(tap_, boundOne));
    EXPECT_TRUE(swallows(tap_, boundOne)) << "again";
}

TEST_F(EventTapsContractTest, LetsAllOtherKeysPass) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    EXPECT_TRUE(passes(boundOther));
    EXPECT_TRUE(passes({.keyCode = boundOne.keyCode, .modifierFlags = 0}));
    EXPECT_TRUE(swallows(tap_, boundOne)) << "and was told of this one alone";
}

TEST_F(EventTapsContractTest, IsMadeDisabledAndWithoutInterest) {
    EXPECT_TRUE(passes(boundOne));
    tap_.tap().enable(true);
    EXPECT_TRUE(passes(boundOne));
    tap_.watch({boundOne});
    EXPECT_TRUE(swallows(tap_, boundOne));
}

TEST_F(EventTapsContractTest, DisabledItSwallowsNothingUntilItIsEnabledAgain) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    EXPECT_TRUE(swallows(tap_, boundOne));
    tap_.tap().enable(false);
    EXPECT_TRUE(passes(boundOne));
    tap_.tap().enable(true);
    EXPECT_TRUE(swallows(tap_, boundOne));
    tap_.tap().enable(true);
    EXPECT_TRUE(swallows(tap_, boundOne)) << "enabled twice";
}

TEST_F(EventTapsContractTest, AnotherInterestTakesThePlaceOfTheFirst) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    EXPECT_TRUE(swallows(tap_, boundOne));
    tap_.watch({boundOther});
    EXPECT_TRUE(passes(boundOne));
    EXPECT_TRUE(swallows(tap_, boundOther));
}

TEST_F(EventTapsContractTest, InvalidatedItIsNoMore) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    tap_.tap().invalidate();
    tap_.tap().invalidate();
    EXPECT_TRUE(passes(boundOne));
    EXPECT_TRUE(tap_.swallowed.empty());
}

TEST_F(EventTapsContractTest, MayBeDestroyedByItsOwnCallback) {
    tap_.watch({boundOne});
    tap_.tap().enable(true);
    tap_.endsAtPress = true;
    EXPECT_TRUE(swallows(tap_, boundOne));
    EXPECT_TRUE(passes(boundOne));
}

} // namespace

} // namespace hollowfernpike::test
