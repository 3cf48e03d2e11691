#include "platform/sway/FakeSway.h"
#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/ipc/IpcEvents.h"
#include "support/fakes/PolledRunLoop.h"

#include <functional>
#include <thread>

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using sway::IpcKind;
using testing::ElementsAre;

constexpr std::uint32_t answerToCommand = 0;
constexpr std::uint32_t answerToSubscription = 2;
constexpr std::uint32_t answerWithTree = 4;
constexpr std::uint32_t binding = 0x80000005;

class IpcClientTest : public testing::Test {
protected:
    FakeSway sway;
    sway::IpcClient client{sway.path()};

    /// What the client is told while `play` is what sway does.
    std::optional<std::string> asked(const std::function<void()>& play) {
        const std::jthread server(play);
        return client.ask(IpcKind::getTree);
    }
};

TEST_F(IpcClientTest, AnAnswerBelongsToItsQuestion) {
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  sway.send(answerWithTree, "first");
              }),
              "first");
    EXPECT_EQ(asked([&] {
                  sway.receive();
                  sway.send(answerWithTree, "second");
              }),
              "second");
}

TEST_F(IpcClientTest, AnAnswerMayComeInPieces) {
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  for (const char byte : ipcMessage(answerWithTree, "whole")) {
                      sway.sendBytes({&byte, 1});
                  }
              }),
              "whole");
}

TEST_F(IpcClientTest, TheAnswerToAPostIsNotTakenForAnother) {
    ASSERT_TRUE(client.post("kill"));
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  EXPECT_EQ(sway.receive(), "kill");
                  sway.receive();
                  sway.send(answerToCommand, "[]");
                  sway.send(answerWithTree, "tree");
              }),
              "tree");
}

TEST_F(IpcClientTest, AConnectionThatSwayHasEndedIsMadeAnew) {
    asked([&] {
        sway.accept();
        sway.receive();
        sway.send(answerWithTree, "old");
    });
    sway.hangUp();
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  sway.send(answerWithTree, "new");
              }),
              "new");
}

TEST_F(IpcClientTest, ASwayThatDoesNotAnswerIsNotWaitedForLong) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(client.ask(IpcKind::getTree), std::nullopt);
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, sway::IpcSocket::patience);
    EXPECT_LT(waited, patience);
}

TEST_F(IpcClientTest, WhatIsNoMessageEndsTheConnection) {
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  sway.sendBytes("HTTP/1.1 400 Bad Request\r\n\r\n");
              }),
              std::nullopt);
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  sway.send(answerWithTree, "again");
              }),
              "again");
}

TEST_F(IpcClientTest, AMessageOfAnAbsurdLengthIsRefused) {
    EXPECT_EQ(asked([&] {
                  sway.accept();
                  sway.receive();
                  auto bytes = ipcMessage(answerWithTree, "");
                  bytes.replace(6, 4, "\xFF\xFF\xFF\xFF");
                  sway.sendBytes(bytes);
              }),
              std::nullopt);
}

TEST_F(IpcClientTest, WithoutASocketNothingIsAskedOrDone) {
    sway.vanish();
    EXPECT_EQ(client.ask(IpcKind::getTree), std::nullopt);
    EXPECT_FALSE(client.post("kill"));
    sway::IpcClient nowhere("");
    EXPECT_FALSE(nowhere.post("kill"));
    sway::IpcClient tooLong(std::string(200, 'x'));
    EXPECT_FALSE(tooLong.post("kill"));
}

class IpcEventsTest : public testing::Test {
protected:
    FakeSway sway;
    PolledRunLoop runLoop;
    std::vector<std::string> events;
    int losses = 0;
    std::unique_ptr<sway::IpcEvents> subscription;

    void subscribeTo(const std::string& names, const std::function<void()>& afterEach = {}) {
        const std::jthread server([&] {
            sway.accept();
            EXPECT_EQ(sway.receive(), names);
            sway.send(answerToSubscription, R"({"success": true})");
        });
        subscription = std::make_unique<sway::IpcEvents>(
            sway.path(), names, runLoop,
            sway::IpcEvents::Listener{.event =
                                          [this, afterEach](const sway::IpcMessage& message) {
                                              events.push_back(message.payload);
                                              if (afterEach) {
                                                  afterEach();
                                              }
                                          },
                                      .lost = [this] { ++losses; }});
        ASSERT_TRUE(subscription->isOpen());
    }
};

TEST_F(IpcEventsTest, EventsComeInOrder) {
    subscribeTo(R"(["binding"])");
    sway.send(binding, "one");
    sway.sendBytes(ipcMessage(binding, "two") + ipcMessage(binding, "three").substr(0, 9));
    ASSERT_TRUE(runLoop.runUntil([&] { return events.size() == 2; }));
    sway.sendBytes(ipcMessage(binding, "three").substr(9));
    ASSERT_TRUE(runLoop.runUntil([&] { return events.size() == 3; }));
    EXPECT_THAT(events, ElementsAre("one", "two", "three"));
    EXPECT_EQ(losses, 0);
}

TEST_F(IpcEventsTest, TheEndOfTheConnectionIsToldOnceAfterTheLastEvent) {
    subscribeTo(R"(["binding"])");
    sway.send(binding, "last");
    sway.hangUp();
    ASSERT_TRUE(runLoop.runUntil([&] { return losses > 0; }));
    EXPECT_THAT(events, ElementsAre("last"));
    EXPECT_FALSE(subscription->isOpen());
    EXPECT_EQ(runLoop.watched(), 0U);
    EXPECT_EQ(losses, 1);
}

TEST_F(IpcEventsTest, AHandlerMayEndTheSubscription) {
    subscribeTo(R"(["binding"])", [this] { subscription.reset(); });
    sway.sendBytes(ipcMessage(binding, "one") + ipcMessage(binding, "two"));
    ASSERT_TRUE(runLoop.runUntil([&] { return !events.empty(); }));
    EXPECT_THAT(events, ElementsAre("one"));
    EXPECT_EQ(runLoop.watched(), 0U);
}

TEST_F(IpcEventsTest, WithoutASocketThereIsNoSubscription) {
    sway.vanish();
    const sway::IpcEvents none(sway.path(), "[]", runLoop,
                               {.event = [](const auto&) {}, .lost = [] {}});
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(runLoop.watched(), 0U);
}

} // namespace

} // namespace hollowfernpike::test
