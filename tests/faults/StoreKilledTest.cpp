#include "model/ModelServices.h"
#include "model/Shortcuts.h"
#include "model/document/ShortcutEncoder.h"
#include "platform/freedesktop/files/FileManager.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 500;

/// The list that the change of this number writes: sometimes longer, sometimes shorter than the one
/// before.
std::string documentOf(std::uint64_t change) {
    std::vector<AppShortcut> list;
    const auto length = static_cast<std::uint8_t>(change % 50 + 1);
    for (std::uint8_t index = 0; index < length; ++index) {
        list.push_back(makeShortcut(index, index, change, "Application"));
    }
    return encodeShortcuts(list, DocumentLayout::compact);
}

/// Another process that changes its list over and over, and says when each change is written.
class Changer {
public:
    explicit Changer(std::uint64_t firstChange) {
        if (::pipe(pipe_.data()) == 0) {
            process_ = ::fork();
        }
        if (process_ < 0) {
            throw std::system_error(errno, std::generic_category(), "no other process");
        }
        if (process_ == 0) {
            changeForEver(firstChange);
        }
        ::close(pipe_[1]);
    }
    Changer(const Changer&) = delete;
    Changer& operator=(const Changer&) = delete;
    ~Changer() { ::close(pipe_[0]); }

    /// Waits until the next change is written. Returns its number; 0 if there is none.
    std::uint64_t nextChange() {
        std::uint64_t number = 0;
        return ::read(pipe_[0], &number, sizeof number) == sizeof number ? number : 0;
    }

    /// Kills the process. Returns the number of the last change that it has reported and
    /// nextChange() has not returned yet; 0 if there is none.
    std::uint64_t kill() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        std::uint64_t last = 0;
        while (const auto next = nextChange()) {
            last = next;
        }
        return last;
    }

private:
    [[noreturn]] void changeForEver(std::uint64_t number) {
        while (true) {
            ShortcutStore::shared().importData(documentOf(number));
            if (::write(pipe_[1], &number, sizeof number) != sizeof number) {
                std::_Exit(EXIT_FAILURE);
            }
            ++number;
        }
    }

    std::array<int, 2> pipe_{};
    pid_t process_ = -1;
};

class StoreKilledTest : public testing::Test {
protected:
    StoreKilledTest() { ::setenv("XDG_DATA_HOME", home_.path().c_str(), 1); }

    std::filesystem::path folder() const { return home_.path() / "Hollowfernpike"; }
    std::filesystem::path file() const { return folder() / "shortcuts.json"; }

    /// Lets another process change the list, and kills it after its first change and `someTime`.
    /// Returns the number of the last change that it has reported.
    static std::uint64_t killedAfter(std::uint64_t firstChange,
                                     const std::function<void()>& someTime) {
        Changer changer(firstChange);
        EXPECT_EQ(changer.nextChange(), firstChange);
        someTime();
        return std::max(firstChange, changer.kill());
    }

    static void spendTime(std::chrono::microseconds time) {
        const auto end = Clock::now() + time;
        while (Clock::now() < end) {
        }
    }

    /// Waits for a new file without sleeping: the moment in which that is there and not reported
    /// yet is short.
    void awaitReplacement() const {
        const auto before = fileNumber();
        const auto end = Clock::now() + std::chrono::seconds{20};
        while (fileNumber() == before && Clock::now() < end) {
        }
    }

    ino_t fileNumber() const {
        struct stat status = {};
        EXPECT_EQ(::stat(file().c_str(), &status), 0);
        return status.st_ino;
    }

    TemporaryDirectory home_;
    freedesktop::FileManager files_;
    ModelServices services_{files_};
};

TEST_F(StoreKilledTest, LeavesTheOldOrTheNewListWheneverItIs) {
    std::mt19937 random{20261121};
    std::uniform_int_distribution<int> microseconds{0, 3000};
    std::uint64_t change = 1;
    int newLists = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto written = killedAfter(change, [&] {
            spendTime(std::chrono::microseconds{microseconds(random)});
            if (round % 2 == 1) {
                awaitReplacement();
            }
        });
        const auto found = contentsOf(file());
        const bool isNew = found == documentOf(written + 1);
        ASSERT_TRUE(isNew || found == documentOf(written)) << "round " << round;
        newLists += isNew ? 1 : 0;
        change = written + 2;
    }
    EXPECT_GT(newLists, 0) << "nobody was killed between the new list and the word of it";
    const auto halfWritten = namesIn(folder()).size() - 1;
    EXPECT_GT(halfWritten, 0U) << "nobody was killed while writing";

    ShortcutStore::shared().importData("[]");
    EXPECT_EQ(contentsOf(file()), "[]");
}

TEST_F(StoreKilledTest, TheNextStartReadsTheListThatWasLeft) {
    const auto written = killedAfter(7, [] { spendTime(std::chrono::microseconds{500}); });
    const auto count = ShortcutStore::shared().shortcuts().size();
    EXPECT_EQ(services_.standardOutput.str(), "");
    EXPECT_THAT(count, testing::AnyOf(written % 50 + 1, (written + 1) % 50 + 1));
}

} // namespace
} // namespace hollowfernpike::test
