#include "platform/qt/UserDefaults.h"

#include "support/Files.h"
#include "support/Privileges.h"
#include "support/TemporaryDirectory.h"

#include <QDateTime>
#include <QVariant>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using test::contentsOf;
using testing::Eq;
using testing::HasSubstr;
using testing::Optional;

constexpr std::string_view domain = "org.example.Ours";
constexpr std::string_view oldDomain = "org.example.Old";

/// Files and folders as others would see them.
mode_t modeOf(const std::filesystem::path& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 0777U;
}

class UserDefaultsTest : public testing::Test {
protected:
    UserDefaultsTest() {
        std::filesystem::create_directories(forAll());
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", userDirectory().c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", forAll().c_str(), 1);
    }

    std::filesystem::path userDirectory() const { return home.path() / "config"; }
    std::filesystem::path forAll() const { return home.path() / "all"; }

    static std::filesystem::path fileIn(const std::filesystem::path& directory,
                                        std::string_view name) {
        return directory / (std::string{name} + ".conf");
    }

    static void write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "[General]\n" << text;
    }

    static QVariant valueOf(const platform::PropertyValue& value) {
        const auto* variant = std::any_cast<QVariant>(&value);
        return variant == nullptr ? QVariant() : *variant;
    }

    /// Does this in a process of its own, so that this one reads the files and not its memory.
    static void inAnotherProcess(const std::function<void()>& work) {
        const auto child = ::fork();
        if (child == 0) {
            work();
            std::_Exit(EXIT_SUCCESS);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    test::TemporaryDirectory home;
};

TEST_F(UserDefaultsTest, HasNothingAtFirstAndWritesNothingUnasked) {
    qt::UserDefaults defaults(domain);
    EXPECT_EQ(defaults.stringForKey("AppLanguage"), std::nullopt);
    EXPECT_FALSE(defaults.objectForKey("AppLanguage").has_value());
    EXPECT_EQ(defaults.persistentDomainForName(domain), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(userDirectory()));
}

TEST_F(UserDefaultsTest, KeepsATextInTheFileOfItsDomain) {
    qt::UserDefaults(domain).setString("en", "AppLanguage");
    EXPECT_THAT(contentsOf(fileIn(userDirectory(), domain)), Eq("[General]\nAppLanguage=en\n"));
    EXPECT_THAT(qt::UserDefaults(domain).stringForKey("AppLanguage"), Optional(Eq("en")));
}

TEST_F(UserDefaultsTest, WritesAtOnce) {
    qt::UserDefaults defaults(domain);
    defaults.setString("en", "AppLanguage");
    EXPECT_THAT(contentsOf(fileIn(userDirectory(), domain)), HasSubstr("AppLanguage=en"));
    defaults.setString("ja", "AppLanguage");
    EXPECT_THAT(contentsOf(fileIn(userDirectory(), domain)), HasSubstr("AppLanguage=ja"));
}

TEST_F(UserDefaultsTest, ReadsWhatAPersonWrote) {
    write(fileIn(userDirectory(), domain), "AppLanguage=en\n");
    EXPECT_THAT(qt::UserDefaults(domain).stringForKey("AppLanguage"), Optional(Eq("en")));
}

TEST_F(UserDefaultsTest, KeepsTextsOfEveryKind) {
    // A domain for each: the toolkit takes a file of the same size and time for unchanged.
    std::string other{domain};
    for (const char* text :
         {"", "日本語", "a, b", "\"quoted\"", "@Invalid()", "@ ; = \\", "two\nlines"}) {
        other += 'x';
        inAnotherProcess([&] { qt::UserDefaults(other).setString(text, "key"); });
        EXPECT_THAT(qt::UserDefaults(other).stringForKey("key"), Optional(Eq(text)));
    }
}

TEST_F(UserDefaultsTest, HasNoTextWhereTheValueIsAList) {
    write(fileIn(userDirectory(), domain), "AppLanguage=en, ja\n");
    qt::UserDefaults defaults(domain);
    EXPECT_EQ(defaults.stringForKey("AppLanguage"), std::nullopt);
    EXPECT_EQ(valueOf(defaults.objectForKey("AppLanguage")), QVariant(QStringList{"en", "ja"}));
}

TEST_F(UserDefaultsTest, FallsBackToTheSettingsForAllUsers) {
    write(fileIn(forAll(), domain), "AppLanguage=en\n");
    qt::UserDefaults defaults(domain);
    EXPECT_THAT(defaults.stringForKey("AppLanguage"), Optional(Eq("en")));
    EXPECT_EQ(valueOf(defaults.objectForKey("AppLanguage")), QVariant("en"));
}

TEST_F(UserDefaultsTest, PutsTheUsersSettingsBeforeThoseForAll) {
    write(fileIn(forAll(), domain), "AppLanguage=en\n");
    qt::UserDefaults defaults(domain);
    defaults.setString("ja", "AppLanguage");
    EXPECT_THAT(defaults.stringForKey("AppLanguage"), Optional(Eq("ja")));
    EXPECT_THAT(contentsOf(fileIn(forAll(), domain)), HasSubstr("AppLanguage=en"));
}

TEST_F(UserDefaultsTest, ListsADomainWithoutTheSettingsForAll) {
    write(fileIn(forAll(), oldDomain), "common=1\n");
    qt::UserDefaults defaults(domain);
    EXPECT_EQ(defaults.persistentDomainForName(oldDomain), std::nullopt);
    write(fileIn(userDirectory(), oldDomain), "own=2\n");
    const auto entries = defaults.persistentDomainForName(oldDomain);
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(valueOf(entries->at("own")), QVariant("2"));
}

TEST_F(UserDefaultsTest, ListsWhatItHasWrittenItself) {
    qt::UserDefaults defaults(domain);
    defaults.setString("en", "AppLanguage");
    const auto entries = defaults.persistentDomainForName(domain);
    ASSERT_TRUE(entries);
    EXPECT_EQ(valueOf(entries->at("AppLanguage")), QVariant("en"));
}

/// Values as another program of ours may have left them.
class UserDefaultsValueTest : public UserDefaultsTest,
                              public testing::WithParamInterface<QVariant> {};

INSTANTIATE_TEST_SUITE_P(
    Each, UserDefaultsValueTest,
    testing::Values(QVariant("text"), QVariant("日本語"), QVariant(""), QVariant(true),
                    QVariant(42), QVariant(-1.5),
                    QVariant(QDateTime::fromString("2024-02-29T23:59:58.123Z", Qt::ISODateWithMs)),
                    QVariant(QByteArray("\0\xFF\n,data", 8)), QVariant(QStringList{"a", "b, c"}),
                    QVariant(QVariantList{"a", 1, QByteArray("x")}),
                    QVariant(QVariantMap{{"key", "value"}, {"list", QStringList{"a", "b"}}})));

TEST_P(UserDefaultsValueTest, IsCopiedUnchangedFromFileToFile) {
    inAnotherProcess(
        [] { qt::UserDefaults(oldDomain).setObject(platform::PropertyValue(GetParam()), "key"); });
    inAnotherProcess([] {
        qt::UserDefaults defaults(domain);
        defaults.setObject(defaults.persistentDomainForName(oldDomain)->at("key"), "key");
    });
    EXPECT_EQ(contentsOf(fileIn(userDirectory(), domain)),
              contentsOf(fileIn(userDirectory(), oldDomain)));
}

TEST_P(UserDefaultsValueTest, ComesBackWithItsValue) {
    inAnotherProcess(
        [] { qt::UserDefaults(domain).setObject(platform::PropertyValue(GetParam()), "key"); });
    auto read = valueOf(qt::UserDefaults(domain).objectForKey("key"));
    EXPECT_TRUE(read.convert(GetParam().metaType()));
    EXPECT_EQ(read, GetParam());
}

TEST_F(UserDefaultsTest, KeepsKeysWithSlashesAndOtherSignsApart) {
    qt::UserDefaults defaults(domain);
    defaults.setString("1", "NSWindow Frame main");
    defaults.setString("2", "group/key");
    defaults.setString("3", "日本");
    const auto entries = defaults.persistentDomainForName(domain);
    ASSERT_TRUE(entries);
    EXPECT_EQ(entries->size(), 3U);
    EXPECT_EQ(valueOf(entries->at("NSWindow Frame main")), QVariant("1"));
    EXPECT_EQ(valueOf(entries->at("group/key")), QVariant("2"));
    EXPECT_EQ(valueOf(entries->at("日本")), QVariant("3"));
}

TEST_F(UserDefaultsTest, KeepsUntilTheEndWhatItCannotWrite) {
    const auto outcome = [&] {
        std::filesystem::create_directories(userDirectory());
        std::filesystem::permissions(home.path(), std::filesystem::perms(0755));
        std::filesystem::permissions(userDirectory(), std::filesystem::perms(0555));
        qt::UserDefaults defaults(domain);
        if (!test::becomeOrdinaryUser()) {
            return 2;
        }
        defaults.setString("en", "AppLanguage");
        const bool isKept = defaults.stringForKey("AppLanguage") == "en";
        return isKept && !std::filesystem::exists(fileIn(userDirectory(), domain)) ? 0 : 1;
    };
    EXPECT_EXIT(std::exit(outcome()), testing::ExitedWithCode(0), "");
}

TEST_F(UserDefaultsTest, SurvivesAFileThatIsNone) {
    std::filesystem::create_directories(fileIn(userDirectory(), domain));
    qt::UserDefaults defaults(domain);
    defaults.setString("en", "AppLanguage");
    EXPECT_THAT(defaults.stringForKey("AppLanguage"), Optional(Eq("en")));
    EXPECT_TRUE(std::filesystem::is_directory(fileIn(userDirectory(), domain)));
}

TEST_F(UserDefaultsTest, LeavesWhatItDoesNotKnowInTheFile) {
    write(fileIn(userDirectory(), domain), "other=kept\n");
    qt::UserDefaults(domain).setString("en", "AppLanguage");
    EXPECT_THAT(contentsOf(fileIn(userDirectory(), domain)), HasSubstr("other=kept"));
}

TEST_F(UserDefaultsTest, WhatItMakesIsPrivateToTheUserWhateverTheUmask) {
    const mode_t before = ::umask(0);
    qt::UserDefaults(domain).setString("en", "AppLanguage");
    EXPECT_EQ(modeOf(userDirectory()), 0700U);
    EXPECT_EQ(modeOf(fileIn(userDirectory(), domain)), 0600U);
    EXPECT_EQ(::umask(before), 0U) << "programs that are launched have the user's";
}

} // namespace
} // namespace hollowfernpike
