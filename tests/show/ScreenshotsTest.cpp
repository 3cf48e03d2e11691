#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <chrono>
#include <set>
#include <string>

#include <QImage>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

constexpr auto longestRun = 280s;

class ScreenshotsTest : public testing::Test {
protected:
    int take(const std::vector<std::string>& arguments) {
        std::vector<std::string> line{HFP_SCREENSHOTS};
        line.insert(line.end(), arguments.begin(), arguments.end());
        ChildProcess program(line);
        const auto status = program.wait(longestRun);
        output = program.output();
        errors = program.errors();
        return status.value_or(-1);
    }

    std::vector<std::string> pictures(const std::string& edition) const {
        std::vector<std::string> names;
        for (const auto& file : std::filesystem::directory_iterator(folder.path() / edition)) {
            names.push_back(file.path().stem().string());
        }
        return names;
    }

    TemporaryDirectory folder;
    std::string output;
    std::string errors;
};

std::size_t colors(const QImage& picture) {
    std::set<QRgb> seen;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            seen.insert(picture.pixel(x, y));
        }
    }
    return seen.size();
}

TEST_F(ScreenshotsTest, OneEditionIsAllThere) {
    ASSERT_EQ(take({folder.path(), "ja-dark-1x"}), 0) << errors;
    const auto names = pictures("ja-dark-1x");
    EXPECT_THAT(names,
                UnorderedElementsAre(
                    "applications", "applications-found", "applications-nothing-found",
                    "applications-other", "crowded-editor", "crowded-window", "delete",
                    "delete-long-name", "editor-application-missing", "editor-chosen",
                    "editor-edit", "editor-long-name", "editor-modifier-missing", "editor-recorded",
                    "editor-recording", "editor-step-1", "export", "export-failed", "import",
                    "import-invalid", "import-question", "import-unreadable", "menu",
                    "menu-export-succeeded", "menu-import-succeeded", "menu-languages",
                    "permission", "status-item", "window", "window-empty", "window-focus",
                    "window-hover", "window-long-names", "window-smallest", "window-tooltip"));
    for (const auto& name : names) {
        const auto file = folder.path() / "ja-dark-1x" / (name + ".png");
        const QImage picture(QString::fromStdString(file.string()));
        EXPECT_GE(picture.width(), 30) << name;
        EXPECT_GE(picture.height(), 30) << name;
        EXPECT_GE(colors(picture), 3) << name << ": no more than the ground and a panel";
    }
}

TEST_F(ScreenshotsTest, EveryLanguagePaletteAndScaleMakesAnEdition) {
    EXPECT_EQ(take({"--editions"}), 0);
    EXPECT_EQ(output, "ja-light-1x\nja-light-2x\nja-dark-1x\nja-dark-2x\n"
                      "en-light-1x\nen-light-2x\nen-dark-1x\nen-dark-2x\n");
}

TEST_F(ScreenshotsTest, AnEditionThatDoesNotExistIsAnError) {
    EXPECT_EQ(take({folder.path(), "en-dark-3x"}), 1);
    EXPECT_THAT(errors, HasSubstr("en-dark-3x"));
    EXPECT_EQ(take({folder.path()}), 2) << "no edition is named";
}

} // namespace
} // namespace hollowfernpike
