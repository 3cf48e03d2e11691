#include "package/InstalledProgram.h"

#include "desktop/editor/ScreenReader.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <sys/resource.h>

namespace hollowfernpike::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

rlimit coreLimitOf(pid_t process) {
    rlimit limit{};
    EXPECT_EQ(::prlimit(process, RLIMIT_CORE, nullptr, &limit), 0);
    return limit;
}

/// What the utility leaves behind, and whom it speaks to.
class PrivacyTest : public InstalledProgramTest {
protected:
    /// Starts the program under strace, which writes down every socket that it or a child process
    /// of it opens.
    std::unique_ptr<ChildProcess> startWatched(const Environment& changes = {}) {
        return story.desktop.start({"strace", "--follow-forks", "--seccomp-bpf", "--trace=socket",
                                    "--quiet=all", "--interruptible=anywhere",
                                    "--output=" + sockets.string(), installed::program},
                                   changes);
    }

    std::vector<std::string> openedSockets() const {
        std::ifstream file(sockets);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            if (line.find("socket(") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    void expectLocalSocketsAlone() const {
        ASSERT_FALSE(openedSockets().empty());
        for (const auto& line : openedSockets()) {
            EXPECT_THAT(line, HasSubstr("socket(AF_UNIX, "));
        }
    }

    using Files = std::map<std::filesystem::path, std::string>;

    /// Every file below the home directory and its contents, runtime and temporary files included,
    /// except what the window manager and the application Front write down.
    Files filesOfTheUtility() const {
        Files files;
        for (const auto& file :
             std::filesystem::recursive_directory_iterator(story.desktop.home())) {
            if (file.is_regular_file()) {
                std::ostringstream text;
                text << std::ifstream(file.path()).rdbuf();
                files[file.path()] = text.str();
            }
        }
        files.erase(story.desktop.home() / ".cache/openbox/openbox.log");
        EXPECT_EQ(files.erase(story.desktop.home() / "Front.log"), 1U);
        return files;
    }

    /// The files that are new or different, or gone.
    std::vector<std::filesystem::path> changesSince(const Files& before) const {
        const auto now = filesOfTheUtility();
        Files changes;
        std::set_symmetric_difference(before.begin(), before.end(), now.begin(), now.end(),
                                      std::inserter(changes, changes.end()));
        std::vector<std::filesystem::path> paths;
        for (const auto& [path, contents] : changes) {
            paths.push_back(path);
        }
        return paths;
    }

    /// Starts the program with a directory of its own for temporary files.
    std::unique_ptr<ChildProcess> startWithTemporaryFiles() {
        const auto folder = story.desktop.home() / "temporary";
        std::filesystem::create_directory(folder);
        auto environment = story.desktop.environment();
        EXPECT_EQ(environment["XDG_RUNTIME_DIR"], story.desktop.home() / "run");
        for (const char* variable : {"TMPDIR", "TMP", "TEMP"}) {
            environment[variable] = folder;
        }
        return std::make_unique<ChildProcess>(std::vector<std::string>{installed::program},
                                              environment);
    }

    const std::filesystem::path sockets = story.desktop.home() / "sockets";
};

TEST_F(PrivacyTest, ItLeavesNoCoreFileButItsApplicationsMay) {
    constexpr rlim_t ours = 4096;
    rlimit limit = coreLimitOf(0);
    limit.rlim_cur = ours;
    ASSERT_EQ(::setrlimit(RLIMIT_CORE, &limit), 0);
    const auto& target = bindTarget();
    const auto utility = story.desktop.start({installed::program});
    ASSERT_TRUE(story.areLive());
    EXPECT_EQ(coreLimitOf(utility->pid()).rlim_cur, 0U);
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));
    ASSERT_THAT(target.copies(), SizeIs(1));
    EXPECT_EQ(coreLimitOf(target.copies().front()).rlim_cur, ours);
}

TEST_F(PrivacyTest, ItNeverOpensANetworkSocket) {
    const auto& target = bindTarget();
    const auto& other = story.install("Other");
    const auto observer = startWatched();
    ASSERT_TRUE(story.areLive());
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));

    story.run({installed::program});
    user.managementComes();
    const auto editor = user.clickAdd();
    user.choose(editor, other.name());
    const Combination recorded{4, control | option};
    user.record(editor, recorded);
    user.clickSave(editor);
    ASSERT_TRUE(story.isLive(story.grabOf(recorded)));
    user.strikeAndLeave(user.clickExport(), "ESC");
    story.strike(recorded);
    ASSERT_TRUE(story.isInFront(other));

    const auto process = installed::process(story.desktop);
    story.run({installed::program, "--action", "quitApp"});
    ASSERT_TRUE(waitUntil([&] { return ::kill(process, 0) != 0; }));
    observer->signal(SIGTERM);
    ASSERT_TRUE(observer->wait());
    expectLocalSocketsAlone();
}

// Each of these makes the toolkit, one of its plug-ins or a library of theirs open a network
// socket.
TEST_F(PrivacyTest, WhateverTheEnvironmentSaysItOpensNoNetworkSocket) {
    bindTarget();
    const auto observer = startWatched({{"SESSION_MANAGER", "tcp/127.0.0.1:9"},
                                        {"DBUS_SESSION_BUS_ADDRESS", "tcp:host=127.0.0.1,port=9"},
                                        {"DBUS_SYSTEM_BUS_ADDRESS", "tcp:host=127.0.0.1,port=9"},
                                        {"DBUS_STARTER_ADDRESS", "tcp:host=127.0.0.1,port=9"},
                                        {"AT_SPI_BUS_ADDRESS", "tcp:host=127.0.0.1,port=9"},
                                        {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                                        {"IBUS_ADDRESS", "tcp:host=127.0.0.1,port=9"},
                                        {"QT_IM_MODULE", "ibus"},
                                        {"QT_QPA_GENERIC_PLUGINS", "tuiotouch"},
                                        {"QT_QPA_PLATFORM", "vnc"},
                                        {"QT_QPA_PLATFORMTHEME", "gtk3"},
                                        {"QT_STYLE_OVERRIDE", "windows"},
                                        {"GDK_BACKEND", "broadway"},
                                        {"BROADWAY_DISPLAY", ":9"},
                                        {"QT_LOGGING_RULES", "*=false"}});
    ASSERT_TRUE(story.areLive());
    story.run({installed::program});
    user.managementComes();
    story.run({installed::program, "--action", "quitApp"});
    ASSERT_TRUE(observer->wait());
    expectLocalSocketsAlone();
}

TEST_F(PrivacyTest, WhatIsTypedLeavesNoTrace) {
    ScreenReader reader{story.desktop.bus().address()};
    bindTarget();
    const auto& front = story.open("Front");
    const auto utility = startWithTemporaryFiles();
    ASSERT_TRUE(story.areLive());
    const auto before = filesOfTheUtility();
    show::type(story.keyboard, "my secret words");
    ASSERT_TRUE(story.getsKeys(front));

    story.run({installed::program});
    user.managementComes();
    const auto editor = user.clickAdd();
    user.choose(editor, front.name());
    user.startRecording(editor);
    show::type(story.keyboard, "hidden words");
    reader.find("label", "修飾キー(⌃⌥⇧⌘)を含めてください"); // it has seen them
    user.strikeAndLeave(editor, "ESC");
    EXPECT_THAT(changesSince(before), IsEmpty());
    EXPECT_EQ(utility->output() + utility->errors(), "");
}

} // namespace
} // namespace hollowfernpike::test
