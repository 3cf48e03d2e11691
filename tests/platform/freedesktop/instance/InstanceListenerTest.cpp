#include "platform/freedesktop/instance/InstanceListener.h"

#include "platform/posix/SystemCall.h"
#include "support/TemporaryDirectory.h"
#include "support/fakes/PolledRunLoop.h"

#include <array>
#include <list>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::connectedSocket;
using freedesktop::encoded;
using freedesktop::InstanceListener;
using freedesktop::InstanceRequest;
using posix::Descriptor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const InstanceRequest honest{"show", "id"};

class InstanceListenerTest : public testing::Test {
protected:
    void listen(uid_t user = ::geteuid()) {
        listener_.emplace(
            socket_, loop_,
            [this](const InstanceRequest& request) { requests_.push_back(request); },
            [](const InstanceRequest& request) { return request.action != "impossible"; }, user);
    }

    /// Repeats the attempt while the listener serves, because its queue may be full.
    Descriptor connect() {
        Descriptor socket;
        EXPECT_TRUE(loop_.runUntil([&] {
            try {
                socket = connectedSocket(private_, "socket");
            } catch (const std::system_error& error) {
                EXPECT_EQ(error.code(), std::errc::resource_unavailable_try_again);
            }
            return static_cast<bool>(socket);
        }));
        return socket;
    }

    static void send(const Descriptor& socket, const std::string& text) {
        posix::checked(::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL));
    }

    /// What the listener answers, before it hangs up.
    std::string answerOn(const Descriptor& socket) {
        std::string answer;
        std::array<char, 100> buffer{};
        EXPECT_TRUE(loop_.runUntil([&] {
            const auto size = ::recv(socket.get(), buffer.data(), buffer.size(), 0);
            answer.append(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
            return size == 0 || (size < 0 && errno != EAGAIN);
        }));
        return answer;
    }

    std::string answerTo(const std::string& text) {
        const auto socket = connect();
        send(socket, text);
        return answerOn(socket);
    }

    TemporaryDirectory directory_;
    freedesktop::PrivateDirectory private_{directory_.path()};
    const Descriptor socket_ = freedesktop::listeningSocket(private_, "socket");
    PolledRunLoop loop_;
    std::vector<InstanceRequest> requests_;
    std::optional<InstanceListener> listener_;
};

TEST_F(InstanceListenerTest, ARequestIsAnsweredAndPassedOn) {
    listen();
    EXPECT_EQ(answerTo(encoded(honest)), freedesktop::acknowledgement);
    EXPECT_THAT(requests_, ElementsAre(honest));
    EXPECT_EQ(loop_.watched(), 1U);
}

TEST_F(InstanceListenerTest, WhatCannotBeDoneIsRefusedAndNotPassedOn) {
    listen();
    EXPECT_EQ(answerTo(encoded({"impossible", ""})), freedesktop::refusal);
    EXPECT_EQ(answerTo(encoded(honest)), freedesktop::acknowledgement);
    EXPECT_THAT(requests_, ElementsAre(honest));
}

TEST_F(InstanceListenerTest, GarbageIsDroppedWithoutAnAnswer) {
    listen();
    const auto good = encoded(honest);
    const std::vector<std::string> garbage{
        "\n",
        std::string(3, '\0'),
        "GET / HTTP/1.1\r\n\r\n",
        good.substr(0, good.size() - 1),
        good + '\n',
        good + good,
        good.substr(1),
        "hollowfernpike request 2\n",
        "hollowfernpike request 2\n\n\n",
        "hollowfernpike request 1\nshow\n\n",
        "hollowfernpike request 2\nshow\n\nthis\nand that\n",
        "hollowfernpike request 2\nsh\x1bow\n\n",
        "hollowfernpike request 2\nshow\n" + std::string(1025, 'i') + "\n",
        std::string(freedesktop::longestRequest, 'x'),
        good + std::string(50000, 'x'),
    };
    for (const auto& text : garbage) {
        EXPECT_EQ(answerTo(text), "") << text.substr(0, 40);
    }
    EXPECT_THAT(requests_, IsEmpty());
    EXPECT_EQ(answerTo(good), freedesktop::acknowledgement);
    EXPECT_THAT(requests_, ElementsAre(honest));
    EXPECT_EQ(loop_.watched(), 1U);
}

TEST_F(InstanceListenerTest, OneThatHangsUpIsForgotten) {
    listen();
    connect();
    send(connect(), encoded({"gone", ""}));
    EXPECT_EQ(answerTo(encoded(honest)), freedesktop::acknowledgement);
    EXPECT_TRUE(loop_.runUntil([this] { return loop_.watched() == 1; }));
    EXPECT_THAT(requests_, ElementsAre(honest));
}

TEST_F(InstanceListenerTest, TheSilentDoNotKeepOthersWaiting) {
    listen();
    std::list<Descriptor> silent;
    for (int count = 0; count < 50; ++count) {
        silent.push_back(connect());
    }
    EXPECT_EQ(answerTo(encoded(honest)), freedesktop::acknowledgement);
    EXPECT_LE(loop_.watched(), 17U);
    EXPECT_EQ(answerOn(silent.front()), "");
    send(silent.back(), encoded({"at last", ""}));
    EXPECT_EQ(answerOn(silent.back()), freedesktop::acknowledgement);
    EXPECT_THAT(requests_, ElementsAre(honest, InstanceRequest{"at last", ""}));
}

TEST_F(InstanceListenerTest, WithoutDescriptorsItRestsInsteadOfSpinning) {
    listen();
    const auto client = connect();
    send(client, encoded(honest));
    EXPECT_EQ(answerOn(client), freedesktop::acknowledgement);
    const auto waiting = connectedSocket(private_, "socket");
    send(waiting, encoded(honest));
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const Descriptor highest{::dup(waiting.get())};
    const rlimit noMore{static_cast<rlim_t>(highest.get()), limit.rlim_max}; // below it all is used
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &noMore), 0);
    const auto before = loop_.served();
    EXPECT_FALSE(loop_.runUntil([] { return false; }, 500ms));
    const auto served = loop_.served() - before;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_LE(served, 2U);
    EXPECT_EQ(answerOn(waiting), freedesktop::acknowledgement);
}

TEST_F(InstanceListenerTest, AnotherUserIsNotHeard) {
    listen(::geteuid() + 1);
    const auto socket = connect();
    ::send(socket.get(), encoded(honest).data(), encoded(honest).size(), MSG_NOSIGNAL);
    EXPECT_EQ(answerOn(socket), "");
    EXPECT_THAT(requests_, IsEmpty());
    EXPECT_EQ(loop_.watched(), 1U);
}

TEST_F(InstanceListenerTest, ClientsAreLetGoWithTheListener) {
    listen();
    const auto socket = connect();
    EXPECT_TRUE(loop_.runUntil([this] { return loop_.watched() == 2; }));
    listener_.reset();
    EXPECT_EQ(answerOn(socket), "");
    EXPECT_EQ(loop_.watched(), 0U);
}

TEST_F(InstanceListenerTest, RequestsKeepTheirTextsOnTheWay) {
    for (const InstanceRequest& request :
         {InstanceRequest{"a", ""}, InstanceRequest{"表示", " 識別子 with  blanks "},
          InstanceRequest{"press", "", "⌃⌥K"},
          InstanceRequest{std::string(1024, 'a'), std::string(1024, 'i'),
                          std::string(1024, 'p')}}) {
        EXPECT_EQ(freedesktop::decoded(encoded(request)), request);
        EXPECT_LE(encoded(request).size(), freedesktop::longestRequest);
    }
}

TEST_F(InstanceListenerTest, AnIdentifierThatCannotBeHandedOverIsLeftOut) {
    const InstanceRequest bare{"a", ""};
    for (const auto& identifier : {std::string("two\nlines"), std::string(1025, 'i'),
                                   std::string("i\0", 2), std::string("\x7f")}) {
        EXPECT_EQ(freedesktop::decoded(encoded({"a", identifier})), bare);
    }
}

} // namespace
} // namespace hollowfernpike::test
