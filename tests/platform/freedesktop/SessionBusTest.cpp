#include "platform/freedesktop/SessionBus.h"

#include "support/PolledRunLoop.h"
#include "support/PrivateDesktop.h"
#include "support/WaitUntil.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <gtest/gtest.h>

namespace {

// As if there were no free descriptor.
bool failsToDuplicate = false; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the names are the
// linker's (--wrap)
int __real_fcntl(int descriptor, int command, long argument);

int __wrap_fcntl(int descriptor, int command, long argument) {
    if (command == F_DUPFD_CLOEXEC && failsToDuplicate) {
        errno = EMFILE;
        return -1;
    }
    return __real_fcntl(descriptor, command, argument);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}

namespace hollowfernpike::freedesktop {

namespace {

class SessionBusTest : public testing::Test {
protected:
    void startBus() {
        server_.emplace();
        ::setenv("DBUS_SESSION_BUS_ADDRESS", server_->address().c_str(), 1);
    }

    /// Whether the bus answers: absent as long as it has not.
    std::shared_ptr<std::optional<bool>> ping() {
        auto success = std::make_shared<std::optional<bool>>();
        bus_.call({.destination = "org.freedesktop.DBus",
                   .object = "/",
                   .interface = "org.freedesktop.DBus.Peer",
                   .method = "Ping"},
                  [success](const auto& failure) {
                      EXPECT_FALSE(*success) << "answered twice";
                      *success = !failure;
                  });
        return success;
    }

    test::PolledRunLoop loop_;
    std::optional<test::SessionBus> server_;
    SessionBus bus_{loop_};
};

TEST_F(SessionBusTest, ABusThatComesBackIsUsedAgain) {
    const auto answers = [&] {
        const auto success = ping();
        EXPECT_TRUE(loop_.runUntil([&] { return success->has_value(); }));
        return success->value_or(false);
    };
    startBus();
    EXPECT_TRUE(answers());
    server_.reset();
    EXPECT_TRUE(test::waitUntil([&] { return !answers(); }));
    EXPECT_FALSE(answers());
    startBus();
    EXPECT_TRUE(answers());
}

TEST_F(SessionBusTest, ACallThatALostBusLeftUnansweredFailsWhenTheNextOneConnectsAgain) {
    startBus();
    const auto connected = ping();
    ASSERT_TRUE(loop_.runUntil([&] { return connected->has_value(); }));
    const auto unanswered = ping();
    server_.reset();
    EXPECT_EQ(*ping(), false) << "nobody reads any more, and writing tells so";
    EXPECT_EQ(*unanswered, std::nullopt);
    startBus();
    const auto next = ping();
    EXPECT_EQ(*unanswered, false);
    EXPECT_TRUE(loop_.runUntil([&] { return next->has_value(); }));
    EXPECT_EQ(*next, true);
}

TEST_F(SessionBusTest, ACallWithoutADescriptorToWatchTheBusFailsAtOnce) {
    startBus();
    failsToDuplicate = true;
    const auto refused = ping();
    failsToDuplicate = false;
    EXPECT_EQ(*refused, false);
    const auto next = ping();
    EXPECT_TRUE(loop_.runUntil([&] { return next->has_value(); }));
    EXPECT_EQ(*next, true);
}

} // namespace

} // namespace hollowfernpike::freedesktop
