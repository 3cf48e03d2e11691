#include "app/LaunchAtLogin.h"

#include "support/fakes/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using platform::LoginItemStatus;
using testing::ElementsAre;

class LaunchAtLoginTest : public testing::Test {
protected:
    test::FakeServices desktop;
    test::FakeLoginItem& item = desktop.loginItem;
};

TEST_F(LaunchAtLoginTest, UnregistersWhenEnabled) {
    item.present = LoginItemStatus::enabled;
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
    LaunchAtLogin::toggle();
    EXPECT_THAT(desktop.log.calls(), ElementsAre("loginItem.unregisterItem"));
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

class NotEnabledTest : public LaunchAtLoginTest,
                       public testing::WithParamInterface<LoginItemStatus> {};

TEST_P(NotEnabledTest, Registers) {
    item.present = GetParam();
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    LaunchAtLogin::toggle();
    EXPECT_THAT(desktop.log.calls(), ElementsAre("loginItem.registerItem"));
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

INSTANTIATE_TEST_SUITE_P(Statuses, NotEnabledTest,
                         testing::Values(LoginItemStatus::notRegistered,
                                         LoginItemStatus::requiresApproval,
                                         LoginItemStatus::notFound));

TEST_F(LaunchAtLoginTest, AFailedRegistrationIsLoggedInJapaneseAndChangesNothing) {
    desktop.userDefaults.own["AppLanguage"] = std::string{"en"};
    item.failure.emplace("書き込めません", "cannot be written");
    LaunchAtLogin::toggle();
    EXPECT_EQ(desktop.standardOutput.str(), "ログイン時起動の設定変更エラー: 書き込めません\n");
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
}

TEST_F(LaunchAtLoginTest, AFailedUnregistrationIsLoggedAndNotRetried) {
    item.present = LoginItemStatus::enabled;
    item.failure.emplace("削除できません", "cannot be removed");
    LaunchAtLogin::toggle();
    EXPECT_EQ(desktop.standardOutput.str(), "ログイン時起動の設定変更エラー: 削除できません\n");
    EXPECT_THAT(desktop.log.calls(), ElementsAre("loginItem.unregisterItem"));
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
}

TEST_F(LaunchAtLoginTest, AFailureIsOneLineWhateverItsDescriptionSays) {
    item.failure.emplace("「/home/a\nb」に書き込めません\r\n",
                         "\"/home/a\nb\" cannot be written\r\n");
    LaunchAtLogin::toggle();
    EXPECT_EQ(desktop.standardOutput.str(),
              "ログイン時起動の設定変更エラー: 「/home/a\\nb」に書き込めません\\r\\n\n");
}

TEST_F(LaunchAtLoginTest, TheStatusIsAskedAnewEachTime) {
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
    item.present = LoginItemStatus::enabled;
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
}

} // namespace

} // namespace hollowfernpike
