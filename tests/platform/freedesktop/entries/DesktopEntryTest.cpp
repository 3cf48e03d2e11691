#include "platform/freedesktop/entries/DesktopEntry.h"

#include "platform/LocalizedError.h"
#include "platform/freedesktop/ApplicationsHome.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class DesktopEntryTest : public ::testing::Test {
protected:
    test::ApplicationsHome home_;
};

std::string errorOf(const std::string& path) {
    try {
        readDesktopEntry(path);
    } catch (const platform::LocalizedError& error) {
        EXPECT_THAT(error.japanese(), HasSubstr(path));
        return error.english();
    }
    return "no error";
}

TEST_F(DesktopEntryTest, ReadsWhatTheFileSays) {
    const auto path =
        home_.addEntry("org.example.Editor", "true %U",
                       "Name[de]=Bearbeiter\nStartupWMClass=Editor\nPath=/tmp\nIcon=edit\n"
                       "StartupNotify=true\nDBusActivatable=true\nNoDisplay=true\n");
    const auto entry = readDesktopEntry(path);
    EXPECT_EQ(entry.path, path);
    EXPECT_EQ(entry.name, "org.example.Editor");
    EXPECT_EQ(entry.displayName, "org.example.Editor");
    EXPECT_THAT(entry.words, ::testing::ElementsAre("true", "%U"));
    EXPECT_TRUE(entry.programFile.ends_with("/true"));
    EXPECT_EQ(entry.windowClass, "Editor");
    EXPECT_EQ(entry.workingDirectory, "/tmp");
    EXPECT_EQ(entry.icon, "edit");
    EXPECT_TRUE(entry.startupNotify);
    EXPECT_TRUE(entry.dbusActivatable);
    EXPECT_TRUE(entry.noDisplay);
    EXPECT_FALSE(entry.terminal);
    EXPECT_FALSE(entry.hidden);
    EXPECT_TRUE(entry.identifier.empty());
    EXPECT_EQ(entry.stamp, stampOf(path));
}

TEST_F(DesktopEntryTest, AHiddenEntryIsReadAndSaysSo) {
    EXPECT_TRUE(readDesktopEntry(home_.addEntry("gone", "true", "Hidden=true\n")).hidden);
}

TEST_F(DesktopEntryTest, AMissingFileIsNamed) {
    const auto path = (home_.applications() / "nothing.desktop").string();
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr("no application"), HasSubstr(path)));
    EXPECT_THAT(errorOf(""), HasSubstr("no application"));
}

TEST_F(DesktopEntryTest, APathWithAZeroByteLeadsNowhere) {
    const auto path = home_.addEntry("app", "true") + '\0';
    for (const auto& longer : {path, path + "junk", path + ".desktop", std::string(1, '\0')}) {
        EXPECT_EQ(stampOf(longer), std::nullopt);
        try {
            readDesktopEntry(longer);
            ADD_FAILURE() << "reads what is at the beginning of the path";
        } catch (const platform::LocalizedError& error) {
            auto shown = longer;
            shown.replace(shown.find('\0'), 1, "\uFFFD");
            EXPECT_THAT(error.english(), AllOf(HasSubstr("no application"), HasSubstr(shown)));
            EXPECT_THAT(error.japanese(), HasSubstr(shown));
        }
    }
}

TEST_F(DesktopEntryTest, AFileWithAZeroByteIsRefused) {
    using namespace std::string_literals;
    for (const auto& more :
         {"Path=/tmp\0/gone\n"s, "TryExec=true\0junk\n"s, "Comment=\0\n"s, "\0"s}) {
        EXPECT_THAT(errorOf(home_.addEntry("cut", "true", more)),
                    HasSubstr("does not describe an application"));
    }
    EXPECT_THAT(errorOf(home_.addEntry("cut", "true\0junk"s)),
                HasSubstr("does not describe an application"));
}

TEST_F(DesktopEntryTest, AMissingProgramIsNamed) {
    const auto path = home_.addEntry("lost", "/nowhere/program --option");
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr("/nowhere/program"), HasSubstr("missing")));
}

TEST_F(DesktopEntryTest, AMissingTriedProgramIsNamed) {
    const auto path = home_.addEntry("lost", "true", "TryExec=no-such-program\n");
    EXPECT_THAT(errorOf(path), AllOf(HasSubstr("no-such-program"), HasSubstr("missing")));
}

TEST_F(DesktopEntryTest, WhatIsNoApplicationIsRefused) {
    const auto& directory = home_.applications();
    const std::string refusal = "does not describe an application";
    EXPECT_THAT(errorOf(home_.write(directory / "empty.desktop", "")), HasSubstr(refusal));
    EXPECT_THAT(errorOf(home_.write(directory / "noise.desktop", "\x01\x02\xFF[[[\n")),
                HasSubstr(refusal));
    EXPECT_THAT(errorOf(home_.write(directory / "link.desktop",
                                    "[Desktop Entry]\nType=Link\nName=a\nURL=file:///\n")),
                HasSubstr(refusal));
    EXPECT_THAT(errorOf(home_.addEntry("quotes", "true \"open")), HasSubstr(refusal));
    EXPECT_THAT(errorOf(home_.addEntry("nothing", "")), HasSubstr(refusal));
    EXPECT_THAT(errorOf(directory.string()), HasSubstr(refusal));
    EXPECT_THAT(errorOf("/dev/zero"), HasSubstr(refusal));
}

TEST_F(DesktopEntryTest, AnEntryOfMoreThanAMegabyteIsNone) {
    const auto path = home_.addEntry("large", "true", "Comment=");
    constexpr std::uintmax_t megabyte = 1 << 20;
    std::ofstream(path, std::ios::app)
        << std::string(megabyte - std::filesystem::file_size(path), 'x');
    EXPECT_EQ(readDesktopEntry(path).name, "large");
    std::ofstream(path, std::ios::app) << 'x';
    EXPECT_THAT(errorOf(path), HasSubstr("does not describe an application"));
}

TEST_F(DesktopEntryTest, WithoutACommandLineOnlyTheBusCanOpenIt) {
    const auto write = [this](const std::string& more) {
        return home_.write(home_.applications() / "org.example.Idle.desktop",
                           "[Desktop Entry]\nType=Application\nName=I\n" + more);
    };
    const std::string refusal = "does not describe an application";
    EXPECT_THAT(errorOf(write("")), HasSubstr(refusal));
    EXPECT_THAT(errorOf(write("DBusActivatable=false\n")), HasSubstr(refusal));
    EXPECT_TRUE(readDesktopEntry(write("DBusActivatable=true\n")).words.empty());
}

TEST_F(DesktopEntryTest, AFifoIsRefusedWithoutWaitingForAWriter) {
    const auto path = (home_.applications() / "pipe.desktop").string();
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT(errorOf(path), HasSubstr("does not describe an application"));
}

TEST_F(DesktopEntryTest, AFileNameThatIsNotUtf8IsReadAsItIs) {
    const auto path = home_.addEntry("caf\xE9", "true");
    EXPECT_EQ(readDesktopEntry(path).name, "caf\xE9");
    EXPECT_EQ(readDesktopEntry(path).path, path);
}

TEST_F(DesktopEntryTest, TheNameIsTheFileNameWithoutItsExtension) {
    EXPECT_EQ(entryName("/a/b/org.example.App.desktop"), "org.example.App");
    EXPECT_EQ(entryName("plain"), "plain");
    EXPECT_EQ(entryName("/a/notes.txt"), "notes.txt");
    EXPECT_EQ(entryName("/a/.desktop"), "");
}

} // namespace

} // namespace hollowfernpike::freedesktop
