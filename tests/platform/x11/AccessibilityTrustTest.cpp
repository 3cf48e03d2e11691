#include "platform/x11/AccessibilityTrust.h"

#include "platform/x11/KeyTapTest.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace hollowfernpike::test {

namespace {

using x11::TrustProblem;

class AccessibilityTrustTest : public KeyTapTest {
protected:
    /// From here on new clients of this process are untrusted ones.
    void loseTrust() {
        const auto file = (home_.path() / "authority").string();
        run({"xauth", "-f", file, "generate", display_.name(), ".", "untrusted", "timeout", "0"});
        ASSERT_EQ(::setenv("XAUTHORITY", file.c_str(), 1), 0);
    }
    void regainTrust() { ASSERT_EQ(::unsetenv("XAUTHORITY"), 0); }

    TemporaryDirectory home_;
    std::vector<TrustProblem> prompts_;
    x11::AccessibilityTrust trust_{[this](TrustProblem problem) { prompts_.push_back(problem); },
                                   display_.name()};
};

TEST_F(AccessibilityTrustTest, anOrdinaryClientIsTrusted) {
    EXPECT_TRUE(trust_.isProcessTrusted());
    EXPECT_TRUE(trust_.isProcessTrustedWithPrompt());
    EXPECT_TRUE(prompts_.empty());
}

TEST_F(AccessibilityTrustTest, anUntrustedClientIsRefused) {
    loseTrust();
    EXPECT_FALSE(trust_.isProcessTrusted());
    EXPECT_TRUE(prompts_.empty());
    EXPECT_FALSE(trust_.isProcessTrustedWithPrompt());
    EXPECT_EQ(prompts_, std::vector{TrustProblem::restrictedClient});
}

TEST_F(AccessibilityTrustTest, anUntrustedClientGetsNoTap) {
    loseTrust();
    EXPECT_FALSE(ListeningTap(taps_, platform::EventTapOptions::active).exists());
    EXPECT_FALSE(ListeningTap(taps_, platform::EventTapOptions::listenOnly).exists());
}

TEST_F(AccessibilityTrustTest, theAnswerFollowsTheServer) {
    loseTrust();
    ASSERT_FALSE(trust_.isProcessTrusted());
    regainTrust();
    EXPECT_TRUE(trust_.isProcessTrusted());
    EXPECT_TRUE(ListeningTap(taps_, platform::EventTapOptions::active).exists());
}

TEST_F(AccessibilityTrustTest, everyGoodAnswerIsTold) {
    int told = 0;
    x11::AccessibilityTrust trust([](TrustProblem) {}, display_.name(), [&told] { ++told; });
    loseTrust();
    trust.isProcessTrustedWithPrompt();
    EXPECT_EQ(told, 0);
    regainTrust();
    trust.isProcessTrusted();
    trust.isProcessTrustedWithPrompt();
    EXPECT_EQ(told, 2);
}

TEST_F(AccessibilityTrustTest, withoutAServerThereIsNoTrust) {
    x11::AccessibilityTrust nowhere{[this](TrustProblem problem) { prompts_.push_back(problem); },
                                    "no display at all"};
    EXPECT_FALSE(nowhere.isProcessTrustedWithPrompt());
    EXPECT_EQ(prompts_, std::vector{TrustProblem::noDisplay});
}

TEST_F(AccessibilityTrustTest, theDisplayOfTheEnvironmentIsAskedByDefault) {
    x11::AccessibilityTrust trust{[this](TrustProblem problem) { prompts_.push_back(problem); }};
    ASSERT_EQ(::setenv("DISPLAY", display_.name().c_str(), 1), 0);
    EXPECT_TRUE(trust.isProcessTrusted());
    ASSERT_EQ(::unsetenv("DISPLAY"), 0);
    EXPECT_FALSE(trust.isProcessTrustedWithPrompt());
    EXPECT_EQ(prompts_, std::vector{TrustProblem::noDisplay});
}

TEST_F(AccessibilityTrustTest, aServerThatIsAGuestOfWaylandIsRefused) {
    const Environment session{{"XDG_RUNTIME_DIR", home_.path().string()},
                              {"DISPLAY", display_.name()},
                              {"WAYLAND_DISPLAY", "compositor"}};
    ChildProcess compositor({"weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so",
                             "--use-pixman", "--no-config", "--socket=compositor"},
                            session);
    ASSERT_TRUE(
        waitUntil([&] { return std::filesystem::exists(home_.path() / "compositor"); }, 30s))
        << compositor.errors();
    ChildProcess guest({"Xwayland", "-displayfd", "1", "-noreset"}, session);
    const auto number = guest.waitForLine("", 30s);
    ASSERT_TRUE(number) << guest.errors();

    x11::AccessibilityTrust trust{[this](TrustProblem problem) { prompts_.push_back(problem); },
                                  ':' + *number};
    EXPECT_TRUE(waitUntil([&] { return !trust.isProcessTrusted(); }));
    EXPECT_FALSE(trust.isProcessTrustedWithPrompt());
    EXPECT_EQ(prompts_, std::vector{TrustProblem::guestOfWayland});
}

TEST_F(AccessibilityTrustTest, aServerThatWentAwayIsNoDisplay) {
    display_.server().signal(SIGKILL);
    ASSERT_TRUE(display_.server().wait());
    EXPECT_FALSE(trust_.isProcessTrustedWithPrompt());
    EXPECT_EQ(prompts_, std::vector{TrustProblem::noDisplay});
}

} // namespace

} // namespace hollowfernpike::test
