// Holds our reading of entries against GDesktopAppInfo, whose reading is that of most desktops.

#include "platform/LocalizedError.h"
#include "platform/freedesktop/ApplicationsHome.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/entries/EntryFile.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/entries/GlibPointers.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;

using Reference = std::unique_ptr<GDesktopAppInfo, Releaser<&g_object_unref>>;

std::string textIn(GDesktopAppInfo* info, const char* key) {
    const TextPointer text(g_desktop_app_info_get_string(info, key));
    return orEmpty(text.get());
}

bool flagIn(GDesktopAppInfo* info, const char* key) {
    return g_desktop_app_info_get_boolean(info, key) != FALSE;
}

/// What one side says of an entry, as text; the empty text stands for no application.
std::string told(const std::string& name, const std::string& windowClass, const std::string& icon,
                 const std::string& directory, const std::vector<bool>& flags) {
    std::string text = name + '\n' + windowClass + '\n' + icon + '\n' + directory + '\n';
    for (const bool flag : flags) {
        text += flag ? '1' : '0';
    }
    return text;
}

std::string toldByReference(const std::string& path) {
    const Reference info(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!info) {
        return {};
    }
    auto* const entry = info.get();
    // The reference takes an entry that nobody can open for an application.
    if (textIn(entry, "Exec").empty() && !flagIn(entry, "DBusActivatable")) {
        return {};
    }
    const std::string name = g_app_info_get_name(G_APP_INFO(entry));
    return told(name == "Unnamed" ? "" : name, textIn(entry, "StartupWMClass"),
                textIn(entry, "Icon"), textIn(entry, "Path"),
                {flagIn(entry, "Terminal"), flagIn(entry, "DBusActivatable"),
                 flagIn(entry, "StartupNotify"), g_desktop_app_info_get_is_hidden(entry) != FALSE,
                 g_desktop_app_info_get_nodisplay(entry) != FALSE,
                 g_desktop_app_info_get_show_in(entry, nullptr) != FALSE});
}

std::string toldByUs(const std::string& path) {
    try {
        const auto entry = readDesktopEntry(path);
        return told(entry.displayName, entry.windowClass, entry.icon, entry.workingDirectory,
                    {entry.terminal, entry.dbusActivatable, entry.startupNotify, entry.hidden,
                     entry.noDisplay, EntryFile(path).isForThisDesktop()});
    } catch (const platform::LocalizedError&) {
        return {};
    }
}

/// The lines of entries that programs and people have written, and some that nobody should.
constexpr auto lines = std::to_array<std::string_view>({"Type=Application",
                                                        "Type=Link",
                                                        "Type=",
                                                        "Type = Application ",
                                                        "Name=Plain",
                                                        "Name= leading",
                                                        "Name=trailing ",
                                                        "Name[de]=Deutsch",
                                                        "Name[ja]=日本語",
                                                        "Name=",
                                                        "Name=tab\\there",
                                                        "Name=semi\\;colon",
                                                        "Name=back\\\\slash",
                                                        "Name=\\s space",
                                                        "Exec=true",
                                                        "Exec=true %U",
                                                        "Exec=\"true\" 'single'",
                                                        "Exec=",
                                                        "Exec= true",
                                                        "Exec=no-such-program",
                                                        "Exec=\"unclosed",
                                                        "Exec=/bin/true --x=%f",
                                                        "Exec=sh -c 'a b'",
                                                        "Exec=env A=1 true",
                                                        "Exec=true \\\\$HOME",
                                                        "Exec=$HOME/true",
                                                        "TryExec=true",
                                                        "TryExec=no-such-program",
                                                        "TryExec=",
                                                        "TryExec=/bin/true",
                                                        "Hidden=true",
                                                        "Hidden=1",
                                                        "Hidden=TRUE",
                                                        "Hidden=yes",
                                                        "Hidden=false ",
                                                        "NoDisplay=true",
                                                        "NoDisplay=maybe",
                                                        "Terminal=true",
                                                        "Terminal=0",
                                                        "StartupNotify=true",
                                                        "StartupNotify=",
                                                        "DBusActivatable=true",
                                                        "DBusActivatable=false",
                                                        "StartupWMClass=Some-Class",
                                                        "StartupWMClass= spaced class",
                                                        "OnlyShowIn=GNOME;",
                                                        "OnlyShowIn=KDE;XFCE;",
                                                        "OnlyShowIn=",
                                                        "OnlyShowIn=GNOME",
                                                        "NotShowIn=GNOME;",
                                                        "NotShowIn=KDE",
                                                        "NotShowIn=;",
                                                        "Icon=some-icon",
                                                        "Icon=/a/path.svg",
                                                        "Icon[ja]=other",
                                                        "Path=/tmp",
                                                        "Path=relative",
                                                        "Path=",
                                                        "X-Unknown=1",
                                                        "# a comment",
                                                        "",
                                                        "   ",
                                                        "no key here",
                                                        "=no key",
                                                        "Key",
                                                        "Key With Space=1",
                                                        "[Desktop Action One]",
                                                        "[Desktop Entry]",
                                                        "[Other",
                                                        "[]",
                                                        "Name=\xff\xfe broken",
                                                        "\xEF\xBB\xBF",
                                                        "Name=a\rName=b",
                                                        "Comment=x"});

class ReferenceTest : public ::testing::Test {
protected:
    ReferenceTest() { ::setenv("XDG_CURRENT_DESKTOP", "GNOME:Other", 1); }

    void expectAgreement(const std::string& text) {
        const auto path = home_.write(home_.applications() / "entry.desktop", text);
        EXPECT_EQ(toldByUs(path), toldByReference(path)) << text;
    }

    std::string executed(const std::string& path) {
        const Reference info(g_desktop_app_info_new_from_filename(path.c_str()));
        GError* failure = nullptr;
        if (!info ||
            g_app_info_launch(G_APP_INFO(info.get()), nullptr, nullptr, &failure) == FALSE) {
            const ErrorPointer held(failure);
            return "not started";
        }
        return {};
    }

    test::ApplicationsHome home_;
};

TEST_F(ReferenceTest, AgreesOnEveryEntryOfTheMachine) {
    std::size_t count = 0;
    for (const auto* folder : {"/usr/share/applications", "/usr/local/share/applications"}) {
        std::error_code missing;
        for (const auto& file : fs::recursive_directory_iterator(folder, missing)) {
            if (file.path().extension() == ".desktop") {
                const auto path = file.path().string();
                EXPECT_EQ(toldByUs(path), toldByReference(path)) << path;
                ++count;
            }
        }
    }
    std::cout << count << " entries\n";
}

TEST_F(ReferenceTest, AgreesOnEveryLineByItself) {
    for (const auto text : lines) {
        const std::string line(text);
        expectAgreement("[Desktop Entry]\nType=Application\nName=N\nExec=true\n" + line + '\n');
        expectAgreement("[Desktop Entry]\n" + line + "\nType=Application\nName=N\nExec=true\n");
        expectAgreement(line + "\n[Desktop Entry]\nType=Application\nName=N\nExec=true\n");
    }
}

TEST_F(ReferenceTest, AgreesOnMadeUpEntries) {
    std::mt19937 random(20261122); // the same ones each time
    const auto upTo = [&](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 3000; ++round) {
        std::string text = upTo(10) == 0 ? "" : "[Desktop Entry]\n";
        text += upTo(5) == 0 ? "" : "Type=Application\nExec=true\n";
        for (auto rest = upTo(8); rest > 0; --rest) {
            text += std::string(lines[upTo(lines.size())]) + '\n';
        }
        expectAgreement(text);
        if (HasFailure()) {
            break;
        }
    }
}

// Except for files that describe no application: the reference passes them over, while for us the
// first file counts whatever it says, as the standard has it.
TEST_F(ReferenceTest, AgreesOnWhichFileAnIdentifierMeans) {
    const auto own = home_.applications();
    const auto system = home_.systemApplications();
    const auto second = home_.path() / "second/applications";
    ::setenv("XDG_DATA_DIRS",
             (system.parent_path().string() + ':' + second.parent_path().string()).c_str(), 1);
    for (const auto& [directory, file, rest] : {std::tuple{own, "both.desktop", ""},
                                                {system, "both.desktop", ""},
                                                {system, "shared.desktop", ""},
                                                {second, "shared.desktop", ""},
                                                {own, "hidden.desktop", "Hidden=true\n"},
                                                {system, "hidden.desktop", ""},
                                                {system, "kde/folder.desktop", ""},
                                                {second, "kde-folder.desktop", ""},
                                                {second, "a/b/deep.desktop", ""},
                                                {second, "no-extension", ""},
                                                {second, ".dot.desktop", ""},
                                                {own, "日本.desktop", "NoDisplay=true\n"}}) {
        home_.write(directory / file,
                    std::string("[Desktop Entry]\nType=Application\nName=N\nExec=true\n") + rest);
    }
    DesktopEntries entries;
    for (const std::string name : {"both", "shared", "hidden", "kde-folder", "folder", "a-b-deep",
                                   "deep", "no-extension", ".dot", "日本", "none"}) {
        const Reference info(g_desktop_app_info_new((name + ".desktop").c_str()));
        const auto* entry = entries.index().withIdentifier(name);
        EXPECT_EQ(entry == nullptr ? "" : entry->path,
                  info ? g_desktop_app_info_get_filename(info.get()) : "")
            << name;
    }
}

// Field codes within quotes are left out: the standard does not say what they mean.
TEST_F(ReferenceTest, AgreesOnWhatAProgramIsStartedWith) {
    const std::vector<std::string> words{"plain",
                                         "\"quoted words\"",
                                         "'single quotes'",
                                         "%f",
                                         "%F",
                                         "%u",
                                         "%U",
                                         "--file=%f",
                                         "%i",
                                         "%c",
                                         "%k",
                                         "%%",
                                         "100%%",
                                         "%%f",
                                         "%d",
                                         "%D",
                                         "%n",
                                         "%N",
                                         "%v",
                                         "%m",
                                         R"("a \\"b\\" c")",
                                         R"("\\$HOME")",
                                         "\"\"",
                                         "''",
                                         "a\\\\ b",
                                         ";",
                                         "&&",
                                         "*",
                                         "日本語"};
    std::mt19937 random(20261122);
    constexpr std::size_t count = 120;
    std::vector<std::string> paths;
    for (std::size_t number = 0; number < count; ++number) {
        std::string more = "case" + std::to_string(number);
        for (auto rest = random() % 5; rest > 0; --rest) {
            more += ' ' + words[random() % words.size()];
        }
        paths.push_back(home_.addEntry("case" + std::to_string(number),
                                       home_.witness("leave", more),
                                       "Name[ja]=事例\nIcon=an-icon\n"));
        ASSERT_EQ(executed(paths.back()), "") << more;
    }
    for (const auto& witness : home_.awaitWitnesses(count)) {
        const auto arguments = witness.all("argument");
        ASSERT_GE(arguments.size(), 4U);
        const auto number = std::stoul(arguments[3].substr(4));
        EXPECT_EQ(commandLineOf(readDesktopEntry(paths[number])), arguments) << number;
    }
}

} // namespace

} // namespace hollowfernpike::freedesktop
