#include "platform/macos/EventTaps.h"

#include "platform/macos/fakes/FakeMac.h"

#include <gmock/gmock.h>

namespace hollowfernpike::macos {

namespace {

using platform::EventTapOptions;
using test::FakeMac;
using test::MacTap;
using testing::IsEmpty;
using testing::IsNull;

constexpr std::uint64_t commandFlag = platform::event_flags::command;

/// What one tap's callback was given, and what it answers.
struct Answer {
    bool swallows = false;
    std::function<void()> meanwhile = {};
    std::vector<platform::EventType> types = {};
    std::vector<platform::KeyEvent> presses = {};
};

const platform::KeyEvent* note(platform::EventTap* /*proxy*/, platform::EventType type,
                               const platform::KeyEvent* event, void* userInfo) {
    auto& answer = *static_cast<Answer*>(userInfo);
    answer.types.push_back(type);
    if (event != nullptr) {
        answer.presses.push_back(*event);
    }
    const bool swallows = answer.swallows;
    if (answer.meanwhile) {
        answer.meanwhile();
    }
    return swallows ? nullptr : event;
}

class EventTapsTest : public testing::Test {
protected:
    static MacTap& system() { return *FakeMac::shared().taps.back(); }

    static bool press(std::int64_t keyCode, std::uint64_t flags, bool isMenuOpen = false) {
        return FakeMac::shared().press(system(), keyCode, flags, isMenuOpen);
    }

    void make(EventTapOptions options = EventTapOptions::active) {
        tap_ = EventTaps().create(options, note, &answer_);
    }

    void makeLive(EventTapOptions options = EventTapOptions::active) {
        make(options);
        source_ = tap_->createRunLoopSource();
        source_->addToMainRunLoop();
        tap_->enable(true);
    }

    Answer answer_;
    std::unique_ptr<platform::EventTap> tap_;
    std::unique_ptr<platform::RunLoopSource> source_;
};

TEST_F(EventTapsTest, IsTheFirstToSeeKeysAsTheyComeFromTheKeyboardAndNothingElse) {
    make();
    EXPECT_EQ(system().location, 0);
    EXPECT_EQ(system().placement, 0);
    EXPECT_EQ(system().options, 0);
    EXPECT_EQ(system().mask, 0x400);
    make(EventTapOptions::listenOnly);
    EXPECT_EQ(system().options, 1);
    EXPECT_EQ(system().mask, 0x400);
}

TEST_F(EventTapsTest, IsMadeDisabled) {
    make();
    EXPECT_FALSE(system().isEnabled);
    tap_->enable(true);
    EXPECT_TRUE(system().isEnabled);
}

TEST_F(EventTapsTest, ATapThatTheSystemRefusesIsNull) {
    FakeMac::shared().refusesActive = true;
    make();
    EXPECT_THAT(tap_, IsNull());
    make(EventTapOptions::listenOnly);
    EXPECT_TRUE(tap_);
    FakeMac::shared().refusesListenOnly = true;
    make(EventTapOptions::listenOnly);
    EXPECT_THAT(tap_, IsNull());
}

TEST_F(EventTapsTest, TellsKeyAndModifiers) {
    makeLive();
    EXPECT_TRUE(press(7, commandFlag | 1));
    ASSERT_EQ(answer_.presses.size(), 1);
    EXPECT_EQ(answer_.presses[0].keyCode, 7);
    EXPECT_EQ(answer_.presses[0].flags, commandFlag | 1);
}

TEST_F(EventTapsTest, SwallowsWhatTheCallbackSwallows) {
    makeLive();
    answer_.swallows = true;
    EXPECT_FALSE(press(0, commandFlag));
    answer_.swallows = false;
    EXPECT_TRUE(press(0, commandFlag));
}

TEST_F(EventTapsTest, SeesKeysWhileAMenuIsOpen) {
    makeLive();
    press(0, commandFlag, true);
    EXPECT_EQ(answer_.presses.size(), 1);
}

TEST_F(EventTapsTest, SeesNothingOnceItsSourceIsRemoved) {
    makeLive();
    source_->removeFromMainRunLoop();
    EXPECT_TRUE(press(0, commandFlag));
    EXPECT_THAT(system().modes, IsEmpty());
    EXPECT_THAT(answer_.types, IsEmpty());
}

TEST_F(EventTapsTest, TellsThatItWasDisabledWithoutAnEvent) {
    makeLive();
    answer_.swallows = true;
    EXPECT_TRUE(FakeMac::deliver(system(), platform::eventTapDisabledByTimeout, {}));
    EXPECT_TRUE(FakeMac::deliver(system(), platform::eventTapDisabledByUserInput, {}));
    EXPECT_THAT(answer_.types, testing::ElementsAre(platform::eventTapDisabledByTimeout,
                                                    platform::eventTapDisabledByUserInput));
    EXPECT_THAT(answer_.presses, IsEmpty());
}

TEST_F(EventTapsTest, OtherEventsPass) {
    makeLive();
    answer_.swallows = true;
    for (const std::uint32_t type : {0U, 1U, 11U, 12U}) {
        EXPECT_TRUE(FakeMac::deliver(system(), type, {})) << type;
    }
    EXPECT_THAT(answer_.types, IsEmpty());
}

TEST_F(EventTapsTest, CanBeInvalidatedTwiceAndEnabledInVainAfterwards) {
    makeLive();
    MacTap& there = system();
    tap_->invalidate();
    EXPECT_FALSE(there.isValid);
    EXPECT_TRUE(FakeMac::shared().press(there, 0, commandFlag));
    tap_->invalidate();
    tap_->enable(true);
    EXPECT_THAT(answer_.types, IsEmpty());
}

TEST_F(EventTapsTest, DestroyingItInvalidatesIt) {
    makeLive();
    MacTap& there = system();
    tap_.reset();
    EXPECT_FALSE(there.isValid);
}

TEST_F(EventTapsTest, MayBeDestroyedByItsOwnCallback) {
    makeLive(EventTapOptions::listenOnly);
    answer_.meanwhile = [this] {
        source_->removeFromMainRunLoop();
        tap_.reset();
    };
    EXPECT_TRUE(press(0, commandFlag));
    EXPECT_THAT(tap_, IsNull());
}

TEST_F(EventTapsTest, NobodyElseHoldsCombinations) {
    makeLive();
    tap_->setInterest(std::vector{platform::KeyCombination{.keyCode = 0, .modifierFlags = 0}});
    EXPECT_THAT(tap_->refusedCombinations(), IsEmpty());
    EXPECT_THAT(tap_->listenOnlyCombinations(), IsEmpty());
    press(1, 0);
    EXPECT_EQ(answer_.presses.size(), 1) << "an active tap sees every key";
}

} // namespace

} // namespace hollowfernpike::macos
