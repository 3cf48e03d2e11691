#include "desktop/editor/ScreenReader.h"
#include "desktop/windows/WindowStory.h"
#include "show/Camera.h"
#include "support/SmallDisk.h"
#include "support/WaitUntil.h"

#include <QLibraryInfo>

#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::Ne;
using testing::SizeIs;

/// A system without the toolkit's plug-ins that read drawings; some releases have them in a package
/// of their own.
class WithoutPlugInsTest : public testing::Test {
protected:
    static std::filesystem::path plugIns(const char* kind) {
        return std::filesystem::path(QLibraryInfo::path(QLibraryInfo::PluginsPath).toStdString()) /
               kind;
    }

    void SetUp() override {
        const auto& quartz = story.open("Quartz");
        story.start();
        management = story.openManagement();
        story.add(quartz, {37, control | option});
        story.openManagement();
    }

    /// Whether there is something in the middle of the button that stands out from the rest.
    bool isLegible(const Accessible& button) {
        constexpr int side = 20;
        const auto screen = show::glance(story.desktop.display());
        const auto [x, y] = reader.middleOf(button);
        const QRect part(x - side / 2, y - side / 2, side, side);
        const int ground = qGray(screen.pixel(part.topLeft()));
        int drawn = 0;
        for (int row = part.top(); row <= part.bottom(); ++row) {
            for (int column = part.left(); column <= part.right(); ++column) {
                drawn += std::abs(qGray(screen.pixel(column, row)) - ground) > 64 ? 1 : 0;
            }
        }
        return drawn > side;
    }

    /// The names of the window's buttons that can be pressed, all of which must be legible.
    std::vector<std::string> buttonsOf(const Accessible& window) {
        std::vector<std::string> names;
        for (const auto& part : reader.partsOf(window)) {
            if (part.role == "push button" && reader.isEnabled(part)) {
                EXPECT_TRUE(waitUntil([&] { return isLegible(part); }))
                    << part.name << " in " << window.name;
                names.push_back(part.name);
            }
        }
        return names;
    }

    std::vector<std::string> buttonsOf(std::string_view role, std::string_view title) {
        return buttonsOf(reader.find(role, title));
    }

    // Empty disks that hide the plug-ins.
    SmallDisk imageFormats{plugIns("imageformats"), 4096};
    SmallDisk iconEngines{plugIns("iconengines"), 4096};
    WindowStory story;
    ScreenReader reader{story.desktop.bus().address()};
    xcb_window_t management = XCB_NONE;
};

TEST_F(WithoutPlugInsTest, ItsWindowsOpenAndTheirButtonsAreLegible) {
    EXPECT_THAT(buttonsOf("frame", story.titles.management),
                ElementsAre("エクスポート", "インポート", "+ ショートカット追加", "編集", "削除"));
    const auto question = story.clickDelete(0);
    EXPECT_THAT(buttonsOf("alert message", "「Quartz」のショートカットを削除しますか？"),
                ElementsAre("削除", "キャンセル"));
    story.strikeAndLeave(question, "ESC");

    const auto editor = story.clickEdit(0);
    EXPECT_THAT(buttonsOf("dialog", story.titles.editing),
                ElementsAre("アプリを選択...", "記録", "キャンセル", "保存"));
    const auto applications = story.openApplications(editor);
    EXPECT_THAT(buttonsOf("dialog", story.titles.applications),
                ElementsAre("その他...", "キャンセル", "開く"));
    story.strikeAndLeave(applications, "ESC");
    story.strikeAndLeave(editor, "ESC");

    const auto exporting = story.clickExport();
    EXPECT_THAT(buttonsOf("dialog", story.titles.exporting), AllOf(SizeIs(Ge(2)), Each(Ne(""))));
    story.strikeAndLeave(exporting, "ESC");
    const auto importing = story.clickImport();
    EXPECT_THAT(buttonsOf("dialog", story.titles.importing), AllOf(SizeIs(Ge(2)), Each(Ne(""))));
    story.strikeAndLeave(importing, "ESC");
}

TEST_F(WithoutPlugInsTest, ItsWindowsHaveAnIcon) {
    const auto look =
        story.desktop.start({"xprop", "-id", std::to_string(management), "_NET_WM_ICON"});
    EXPECT_EQ(look->wait(), 0) << look->errors();
    EXPECT_THAT(look->output(), testing::HasSubstr("Icon (64 x 64)")); // not the window manager's
}

} // namespace
} // namespace hollowfernpike
