#pragma once

#include "desktop/editor/ScreenReader.h"
#include "desktop/windows/Agreement.h"
#include "desktop/windows/WindowStory.h"

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// What the editor says, in the language that the utility speaks in a new home.
namespace text {

inline constexpr std::string_view clickToRecord = "クリックして記録";
inline constexpr std::string_view pressAKey = "キーを入力してください...";
inline constexpr std::string_view includeAModifier = "修飾キー(⌃⌥⇧⌘)を含めてください";
inline constexpr std::string_view grantPermission =
    "アクセシビリティ権限を許可後、再度「記録」を押してください";
inline constexpr std::string_view recordACombination = "ショートカットキーを記録してください";
inline constexpr std::string_view selectAnApplication = "起動するアプリを選択してください";

} // namespace text

/// Somebody who uses the editor with keyboard and mouse. Texts and places come from the
/// accessibility bus.
class EditorStory : public WindowStory {
public:
    ScreenReader reader{desktop.bus().address()};

    /// The part of the dialog with this title.
    Accessible part(std::string_view title, std::string_view role, std::string_view name);

    /// Clicks once the program knows where the window in front has been put.
    void clickOn(const Accessible& part);

    /// In an editor with both steps: clicks the recorder's button while it says Record, or Stop,
    /// and waits until it says the other.
    void clickRecord(std::string_view title);
    void clickStop(std::string_view title);

    /// Whether, after some waiting, the recorder shows this.
    testing::AssertionResult recorderShows(std::string_view title, std::string_view text);

    /// Strikes the combination while the editor of this title records, and waits until it shows
    /// it.
    testing::AssertionResult records(std::string_view title, const Combination& combination);

    /// Whether, after some waiting, the file holds these shortcuts, in this order.
    testing::AssertionResult saves(const std::vector<KnownShortcut>& shortcuts);

    /// Whether, after some waiting, the utility has as few connections to the display as before
    /// anybody recorded.
    testing::AssertionResult listensNoMore();

    /// Whether it has more connections now than while nobody recorded.
    bool listens();

    /// To be called while nobody records.
    void rememberConnections();

private:
    std::size_t connections_ = 0;
};

/// The form in which people read the combination.
std::string shown(const Combination& combination);

/// One shortcut is there, and the window with its card is in front.
class EditorStoryTest : public testing::Test {
protected:
    EditorStory story;
    Application& quartz = story.open("Quartz");
    nlohmann::json before;

    void SetUp() override;
};

} // namespace hollowfernpike::test
