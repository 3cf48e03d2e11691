#include "comparison/Windows.h"

#include "comparison/Processes.h"
#include "comparison/Statistics.h"
#include "desktop/Story.h"
#include "desktop/windows/WindowUser.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace hollowfernpike::bench {

namespace {

using Clock = std::chrono::steady_clock;
using Look = std::vector<std::uint32_t>;

constexpr double listBudget = 0.3;
constexpr double panelBudget = 0.1;
constexpr std::size_t shortcuts = 1000;
constexpr std::size_t applications = 40;
constexpr std::size_t entries = 500;

/// No bare keys and none with Shift or Control alone, because those type and select text.
std::vector<test::Combination> combinations() {
    constexpr std::array<std::uint64_t, 3> typing{0, test::shift, test::control};
    std::vector<test::Combination> all;
    for (const auto modifiers : test::modifierSets()) {
        const bool isFree = std::ranges::find(typing, modifiers) == typing.end();
        for (const auto& key : test::namedKeys()) {
            if (isFree && all.size() < shortcuts) {
                all.push_back({key.keyCode, modifiers});
            }
        }
    }
    return all;
}

/// The names of neighbours in the list begin with different letters, so that a row that moves looks
/// different.
std::string nameOf(std::size_t application) {
    return static_cast<char>('A' + application % 26) + ("pplication" + std::to_string(application));
}

/// The program with a long list, on a private desktop.
class WindowsScene {
public:
    WindowsScene() {
        story_.unbindWindowManager(); // it would hold combinations of the list
        std::vector<const test::Application*> installed;
        for (std::size_t number = 0; number < applications; ++number) {
            installed.push_back(&story_.install(nameOf(number)));
        }
        std::size_t number = 0;
        for (const auto& combination : combinations()) {
            story_.bind(combination, *installed[number++ % applications]);
        }
        writeFurtherEntries();
        learnLooks();
    }

    /// The first opening after a start, which makes the window.
    double timeFirstOpening() {
        end();
        story_.startUtility();
        return timeOpening();
    }

    double timeOpening() {
        rest();
        const auto begin = Clock::now();
        const auto request = story_.desktop.start({HFP_PROGRAM});
        const double taken = secondsUntil([this] { return look() == full_; }, begin);
        window_ = user_.managementComes();
        return taken;
    }

    void close() {
        story_.pager.close(window_);
        user_.goes(window_);
    }

    double timeDeletion() {
        user_.clickDelete(0);
        return timeConfirmation(shorter_);
    }

    double timeImport() {
        prepareImport();
        return timeConfirmation(restored_);
    }

    /// The panel of applications on the editor.
    double timePanel() {
        user_.clickAdd();
        rest();
        const auto begin = Clock::now();
        story_.keyboard.strike({"SPCE"});
        const double taken = secondsUntil([this] { return panelLook() == panel_; }, begin);
        closePanel();
        return taken;
    }

private:
    void writeFurtherEntries() const {
        for (auto number = applications; number < entries; ++number) {
            const auto name = nameOf(number);
            std::ofstream(story_.desktop.applications() / (name + ".desktop"))
                << "[Desktop Entry]\nType=Application\nExec=true\nName=" << name << '\n';
        }
    }

    void closePanel() {
        user_.strikeAndLeave(user_.comes(user_.titles.applications), "ESC");
        user_.strikeAndLeave(user_.comes(user_.titles.adding), "ESC");
        user_.managementComes();
    }

    /// Waits for the combinations, too: the X server takes some time to release so many.
    void end() {
        story_.utility().signal(SIGTERM);
        if (!story_.utility().wait() || !story_.isFree(combinations().back())) {
            throw std::runtime_error("the program does not end");
        }
    }

    void rest() { settle(story_.desktop, story_.utility().pid()); }

    /// Records how the list looks with all shortcuts, without the first, and with all again, then
    /// the panel.
    void learnLooks() {
        story_.startUtility();
        user_.openManagement();
        full_ = restingLook();
        std::filesystem::copy_file(story_.shortcutsFile(), document_);
        user_.strikeAndLeave(user_.clickDelete(0), "RTRN");
        shorter_ = restingLook();
        prepareImport();
        story_.keyboard.strike({"RTRN"});
        restored_ = restingLook();
        if (full_ == shorter_ || restored_ == shorter_) {
            throw std::runtime_error("the list cannot be told from another");
        }
        learnPanel();
    }

    void learnPanel() {
        user_.clickAdd();
        story_.keyboard.strike({"SPCE"});
        user_.comes(user_.titles.applications);
        rest();
        panel_ = panelLook();
        closePanel();
    }

    void prepareImport() {
        user_.enterPath(user_.clickImport(), document_);
        user_.comes(user_.titles.alert);
    }

    Look restingLook() {
        user_.managementComes();
        rest();
        return look();
    }

    /// A column through the first letters of the names.
    Look look() {
        constexpr int names = 80;
        return user_.screen.column(story_.pager.windowCalled(user_.titles.management), names);
    }

    Look panelLook() {
        constexpr int names = 52; // clear of the search field's caret
        return user_.screen.column(story_.pager.windowCalled(user_.titles.applications), names);
    }

    double timeConfirmation(const Look& expected) {
        rest();
        const auto begin = Clock::now();
        story_.keyboard.strike({"RTRN"});
        const double taken = secondsUntil([&] { return look() == expected; }, begin);
        user_.managementComes();
        return taken;
    }

    static double secondsUntil(const std::function<bool()>& condition, Clock::time_point begin) {
        Clock::time_point end;
        const auto isThere = [&] {
            end = Clock::now();
            return condition();
        };
        if (!test::waitUntil(isThere)) {
            throw std::runtime_error("the window does not show what it should");
        }
        return std::chrono::duration<double>(end - begin).count();
    }

    test::Story story_;
    test::WindowUser user_{story_};
    std::filesystem::path document_ = story_.desktop.home() / "document.json";
    Look full_;
    Look shorter_;
    Look restored_; ///< Full again; the card whose neighbour was deleted has the focus.
    Look panel_;
    xcb_window_t window_ = XCB_NONE;
};

void add(Table& table, const std::string& what, const std::vector<double>& seconds,
         double most = listBudget) {
    table.add({.what = what,
               .value = median(seconds),
               .percentile95 = percentile95(seconds),
               .budget = most});
}

void measureOpening(Table& table, WindowsScene& scene, int starts) {
    std::vector<double> first;
    std::vector<double> again;
    for (int start = 0; start < starts; ++start) {
        first.push_back(scene.timeFirstOpening());
        scene.close();
        again.push_back(scene.timeOpening());
    }
    add(table, "asked for to painted, first opening", first);
    add(table, "asked for to painted, closed before", again);
}

void measureChanges(Table& table, WindowsScene& scene, int changes) {
    std::vector<double> deletions;
    std::vector<double> imports;
    for (int change = 0; change < changes; ++change) {
        deletions.push_back(scene.timeDeletion());
        imports.push_back(scene.timeImport());
    }
    add(table, "deletion confirmed to list painted", deletions);
    add(table, "import confirmed to list painted", imports);
}

void measurePanel(Table& table, WindowsScene& scene, int openings) {
    std::vector<double> taken;
    for (int opening = 0; opening < openings; ++opening) {
        taken.push_back(scene.timePanel());
    }
    add(table, "asked for to painted", taken, panelBudget);
}

} // namespace

void measureWindows(Table& table, WindowsEffort effort) {
    WindowsScene scene;
    table.section("Management window, " + std::to_string(shortcuts) + " shortcuts");
    measureOpening(table, scene, effort.starts);
    measureChanges(table, scene, effort.changes);
    table.section("Panel of applications, " + std::to_string(entries) + " applications");
    measurePanel(table, scene, effort.changes);
}

} // namespace hollowfernpike::bench
