#include "platform/x11/TrustProblem.h"

#include "platform/x11/taps/KeyTapTest.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace hollowfernpike::test {

namespace {

using x11::TrustProblem;

class TrustProblemTest : public KeyTapTest {
protected:
    /// From here on new clients of this process are untrusted ones.
    void loseTrust() {
        const auto file = (home_.path() / "authority").string();
        run({"xauth", "-f", file, "generate", display_.name(), ".", "untrusted", "timeout", "0"});
        ASSERT_EQ(::setenv("XAUTHORITY", file.c_str(), 1), 0);
    }
    void regainTrust() { ASSERT_EQ(::unsetenv("XAUTHORITY"), 0); }

    /// The problem that a new client has.
    static std::optional<TrustProblem> problemOn(const std::string& displayName) {
        return x11::findTrustProblem(x11::Connection::open(displayName).get());
    }
    std::optional<TrustProblem> problem() { return problemOn(display_.name()); }

    TemporaryDirectory home_;
};

TEST_F(TrustProblemTest, AnOrdinaryClientIsTrusted) {
    EXPECT_EQ(problem(), std::nullopt);
}

TEST_F(TrustProblemTest, AnUntrustedClientIsRefused) {
    loseTrust();
    EXPECT_EQ(problem(), TrustProblem::restrictedClient);
}

TEST_F(TrustProblemTest, AnUntrustedClientGetsNoTap) {
    loseTrust();
    EXPECT_FALSE(ListeningTap(taps_, platform::EventTapOptions::active).exists());
    EXPECT_FALSE(ListeningTap(taps_, platform::EventTapOptions::listenOnly).exists());
}

TEST_F(TrustProblemTest, TheAnswerFollowsTheServer) {
    loseTrust();
    ASSERT_TRUE(problem());
    regainTrust();
    EXPECT_EQ(problem(), std::nullopt);
    EXPECT_TRUE(ListeningTap(taps_, platform::EventTapOptions::active).exists());
}

TEST_F(TrustProblemTest, WithoutAServerThereIsNoTrust) {
    EXPECT_EQ(problemOn("no display at all"), TrustProblem::noDisplay);
}

TEST_F(TrustProblemTest, AServerThatIsAGuestOfWaylandIsRefused) {
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

    EXPECT_TRUE(waitUntil([&] { return problemOn(':' + *number).has_value(); }));
    EXPECT_EQ(problemOn(':' + *number), TrustProblem::guestOfWayland);
}

TEST_F(TrustProblemTest, AServerThatWentAwayIsNoDisplay) {
    display_.server().signal(SIGKILL);
    ASSERT_TRUE(display_.server().wait());
    EXPECT_EQ(problem(), TrustProblem::noDisplay);
}

} // namespace

} // namespace hollowfernpike::test
