#include "platform/freedesktop/files/DirectoryWatch.h"

#include "platform/freedesktop/entries/DesktopEntries.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <fstream>

#include <sys/resource.h>

namespace hollowfernpike::freedesktop {

namespace {

/// Lets the process open nothing more for as long as it lives, inotify queues included.
class NoMoreDescriptors {
public:
    NoMoreDescriptors() {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit none{0, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;
    ~NoMoreDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

class DirectoryWatchTest : public testing::Test {
protected:
    void addEntry(const std::string& name) const {
        std::ofstream(home.path() / (name + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=true\n";
    }

    test::TemporaryDirectory home;
};

TEST_F(DirectoryWatchTest, NoticesANewEntryAndNothingElse) {
    DirectoryWatch watch;
    watch.add(home.path());
    EXPECT_FALSE(watch.hasChanged());
    std::ofstream(home.path() / "notes.txt") << "not an entry";
    EXPECT_FALSE(watch.hasChanged());
    addEntry("editor");
    EXPECT_TRUE(watch.hasChanged());
    EXPECT_FALSE(watch.isBlind());
}

TEST_F(DirectoryWatchTest, NoticesFilesWithTheEndingThatIsAskedFor) {
    DirectoryWatch watch;
    watch.add(home.path(), "");
    EXPECT_FALSE(watch.hasChanged());
    std::ofstream(home.path() / "icon.png") << "an icon";
    EXPECT_TRUE(watch.hasChanged());
}

TEST_F(DirectoryWatchTest, NoticesThatAMissingDirectoryAppears) {
    DirectoryWatch watch;
    watch.add(home.path() / "share/applications");
    EXPECT_FALSE(watch.hasChanged());
    std::filesystem::create_directories(home.path() / "share/applications");
    EXPECT_TRUE(watch.hasChanged());
}

TEST_F(DirectoryWatchTest, IsBlindAndAlwaysChangedWhereTheKernelWouldNotWatch) {
    std::optional<DirectoryWatch> watch;
    {
        const NoMoreDescriptors limit;
        watch.emplace();
    }
    watch->add(home.path());
    EXPECT_TRUE(watch->isBlind());
    EXPECT_TRUE(watch->hasChanged());
}

TEST_F(DirectoryWatchTest, EntriesAreFoundWithinASecondWithoutTheKernelsHelp) {
    DesktopEntries entries({home.path()});
    {
        const NoMoreDescriptors limit;
        entries.index();
    }
    addEntry("editor");
    const auto editorIsKnown = [&] { return entries.index().withIdentifier("editor") != nullptr; };
    EXPECT_TRUE(test::waitUntil(editorIsKnown));
    addEntry("viewer");
    EXPECT_NE(entries.index().withIdentifier("viewer"), nullptr);
}

} // namespace

} // namespace hollowfernpike::freedesktop
