#include "desktop/editor/ScreenReader.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStoryTest.h"
#include "support/Privileges.h"

#include <fstream>
#include <string>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

constexpr std::size_t kilobyte = 1000;
constexpr std::size_t many = 12'000; // of kilobytes
constexpr std::size_t tooMany = 17'000;

/// Two shortcuts are there, and files that are no lists of shortcuts, or hard to read.
class ImportingTest : public TwoShortcutsTest {
protected:
    const std::filesystem::path file = story.desktop.home() / "document.json";
    Agreement agreement{story};
    ScreenReader reader{story.desktop.bus().address()};

    void SetUp() override {
        ASSERT_TRUE(bindChildrenToFileModes());
        TwoShortcutsTest::SetUp();
    }

    void write(const std::string& text, std::size_t times = 1) const {
        std::ofstream stream(file);
        for (; times > 0; --times) {
            stream << text;
        }
    }

    /// Chooses the file and confirms that the list is to be replaced.
    xcb_window_t import() {
        story.enterPath(story.clickImport(), file);
        const auto question = story.comes(story.titles.alert);
        reader.find("alert message", "ショートカットをインポートしますか？");
        story.keyboard.strike({"RTRN"});
        return question;
    }

    /// Imports; after the question an alert refuses the file, and nothing has changed.
    void expectRefused() {
        const auto question = import();
        expectAlert(story.comes(story.titles.alert, question), "ファイル形式が正しくありません。");
        story.managementComes();
        expectUnchanged();
    }

    /// An alert that says this and why.
    void expectAlert(xcb_window_t alert, std::string_view message) {
        EXPECT_NE(reader.description(reader.find("alert message", message)), "");
        story.strikeAndLeave(alert, "RTRN");
    }

    void expectUnchanged() {
        EXPECT_EQ(story.list(), before);
        EXPECT_TRUE(agreement.on({{quartz, first}, {feldspar, second}}));
        expectBothAreLive();
    }
};

struct Document {
    const char* name;
    std::string text;
    std::size_t times = 1; ///< how often the document has the text
};

// NOLINTNEXTLINE(readability-identifier-naming): called so by the test library
void PrintTo(const Document& document, std::ostream* out) {
    *out << document.name;
}

class RefusedDocumentTest : public ImportingTest, public testing::WithParamInterface<Document> {};

TEST_P(RefusedDocumentTest, IsReportedAndKeepsTheList) {
    write(GetParam().text, GetParam().times);
    expectRefused();
}

INSTANTIATE_TEST_SUITE_P(
    Documents, RefusedDocumentTest,
    testing::Values(Document{"empty", ""}, Document{"noJson", "no list at all"},
                    Document{"anObject", R"({"shortcuts": []})"},
                    Document{"otherRecords", R"([{"name": "Quartz"}])"},
                    Document{"cutOff", R"([{"id": "E621E1F8-C36C-495A-93FC-0C247A3E6E01", "key)"},
                    Document{"manyMegabytesOfBlanks", std::string(kilobyte, ' '), many},
                    Document{"manyMegabytesOfBrackets", std::string(kilobyte, '['), many},
                    Document{"manyMegabytesOfZeros", std::string(kilobyte, '\0'), many}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(ImportingTest, ManyMegabytesAroundAListAreNoObstacle) {
    write(std::string(many * kilobyte, ' ') + json::array({before[1]}).dump());
    import();
    story.managementComes();
    EXPECT_TRUE(agreement.on({{feldspar, second}}));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    EXPECT_TRUE(story.passes(story.front, first.keys()));
}

TEST_F(ImportingTest, AFileOfMoreThanSixteenMegabytesIsReportedBeforeAnyQuestion) {
    write(std::string(tooMany * kilobyte, '['));
    story.enterPath(story.clickImport(), file);
    expectAlert(story.comes(story.titles.alert), "インポートに失敗しました。");
    story.managementComes();
    EXPECT_EQ(story.list(), json(before));
}

TEST_F(ImportingTest, AFileThatMayNotBeReadIsReportedBeforeAnyQuestion) {
    write("[]");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    story.enterPath(story.clickImport(), file);
    expectAlert(story.comes(story.titles.alert), "インポートに失敗しました。");
    story.managementComes();
    expectUnchanged();
}

} // namespace
} // namespace hollowfernpike
