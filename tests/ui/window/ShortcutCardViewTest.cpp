#include "ui/window/ShortcutCardView.h"

#include "ui/Colors.h"
#include "ui/Corners.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/ReadIcons.h"
#include "ui/parts/SystemColors.h"
#include "ui/window/CardConstraints.h"
#include "ui/window/WholeBadge.h"
#include "ui/window/WindowTest.h"

#include <QAccessible>
#include <QLabel>

namespace hollowfernpike::test {

namespace {

/// A card as wide as its owner makes it.
class ShortcutCardViewTest : public WindowTest {
protected:
    static AppShortcut named(const std::string& name, std::uint16_t keyCode = 0,
                             std::uint64_t flags = command) {
        return shortcutFor(name, keyCode, flags);
    }

    static std::unique_ptr<ShortcutCardView> cardFor(const AppShortcut& shortcut, int width = 448) {
        auto card = std::make_unique<ShortcutCardView>(shortcut);
        card->resize(width, ShortcutCardView::usualHeight);
        card->show();
        settle();
        return card;
    }

    /// Gives the application an icon of one colour.
    void paint(const std::string& name, Qt::GlobalColor color) {
        QImage image(32, 32, QImage::Format_ARGB32);
        image.fill(color);
        const std::string file = folder.path() / (name + ".png");
        ASSERT_TRUE(image.save(QString::fromStdString(file)));
        desktop.applicationBundles.icons["/applications/" + name + ".desktop"].imageFile = file;
    }

    static QColor iconColor(ShortcutCardView& card) {
        card.grab();
        awaitIcons();
        return card.grab().toImage().pixelColor(28, 26);
    }

    static int end(const QWidget& view) { return view.x() + view.width(); }

    const std::string endless = std::string(300, 'W');
    TemporaryDirectory folder;
};

TEST_F(ShortcutCardViewTest, KeepsItsConstraintsWithNamesAndKeysOfEveryLength) {
    for (const int width : {368, 448, 900}) {
        for (const auto& name : {std::string(), std::string("X"), std::string("Text Editor"),
                                 endless, std::string("日本語入力メソッド設定ユーティリティ")}) {
            for (const std::uint64_t flags : {std::uint64_t{0}, command, modifierMask}) {
                SCOPED_TRACE(name + " " + std::to_string(width));
                expectCardConstraints(*cardFor(named(name, 65535, flags), width));
            }
        }
    }
}

TEST_F(ShortcutCardViewTest, ANameIsAsWideAsItsTextAndAtLeastAHundred) {
    const auto shortName = cardFor(named("X"));
    EXPECT_EQ(shortName->appNameLabel().width(), 100);
    const auto longName = cardFor(named("A Name of Some Length"));
    EXPECT_EQ(longName->appNameLabel().width(), longName->appNameLabel().sizeHint().width());
    EXPECT_GT(longName->appNameLabel().width(), 100);
}

TEST_F(ShortcutCardViewTest, ALongNameEndsInAnEllipsisAndLeavesTheRestVisible) {
    const auto card = cardFor(named(endless, 49, modifierMask), 368);
    EXPECT_TRUE(card->appNameLabel().shownLines().front().endsWith(u'…'));
    EXPECT_EQ(card->appNameLabel().text().toStdString(), endless);
    EXPECT_EQ(card->hotkeyBadge().size(), card->hotkeyBadge().sizeHint());
    EXPECT_EQ(card->editButton().x(), end(card->hotkeyBadge()) + 12);
}

TEST_F(ShortcutCardViewTest, ABadgeIsAsLargeAsItsText) {
    const auto card = cardFor(named("Editor", 49, modifierMask));
    EXPECT_EQ(card->hotkeyBadge().size(), card->hotkeyBadge().sizeHint());
    const QFontMetrics metrics(card->hotkeyBadge().font());
    EXPECT_EQ(card->hotkeyBadge().width(), metrics.horizontalAdvance(card->hotkeyBadge().text()));
}

TEST_F(ShortcutCardViewTest, TheBadgesTextIsTheCombinationBetweenTwoSpaces) {
    EXPECT_EQ(cardFor(named("Editor", 49, 0x1C0000))->hotkeyBadge().text(), " ⌃⌥⌘Space ");
    EXPECT_EQ(cardFor(named("Editor", 122, 0))->hotkeyBadge().text(), " F1 ");
}

TEST_F(ShortcutCardViewTest, FollowsTheWidthThatItsOwnerGivesIt) {
    const auto card = cardFor(named(endless), 448);
    const int before = card->appNameLabel().width();
    card->resize(600, ShortcutCardView::usualHeight);
    EXPECT_EQ(card->appNameLabel().width(), before + 152);
    expectCardConstraints(*card);
}

TEST_F(ShortcutCardViewTest, CanBeToldToShowAnotherShortcut) {
    paint("Editor", Qt::red);
    paint("Browser with a Long Name", Qt::blue);
    const auto card = cardFor(named("Editor"));
    ASSERT_EQ(iconColor(*card), QColor(Qt::red));
    card->configure(named("Browser with a Long Name", 11, modifierMask));
    EXPECT_EQ(card->appNameLabel().text(), "Browser with a Long Name");
    EXPECT_EQ(card->hotkeyBadge().text(), " ⌃⌥⇧⌘B ");
    EXPECT_EQ(iconColor(*card), QColor(Qt::blue));
    expectCardConstraints(*card);
}

TEST_F(ShortcutCardViewTest, CanBeMadeWithoutAShortcut) {
    ShortcutCardView card;
    card.resize(448, ShortcutCardView::usualHeight);
    card.show();
    settle();
    EXPECT_EQ(card.appNameLabel().text(), "");
    EXPECT_EQ(card.hotkeyBadge().text(), "");
    EXPECT_TRUE(card.iconView().icon().isNull());
    expectCardConstraints(card);
}

TEST_F(ShortcutCardViewTest, ButtonsCallTheirOwnersClosures) {
    const auto card = cardFor(named("Editor"));
    std::vector<std::string> calls;
    card->onEdit = [&] { calls.emplace_back("edit"); };
    card->onDelete = [&] { calls.emplace_back("delete"); };
    card->deleteButton().click();
    card->editButton().click();
    EXPECT_THAT(calls, testing::ElementsAre("delete", "edit"));
}

TEST_F(ShortcutCardViewTest, ButtonsWithoutClosuresDoNothing) {
    const auto card = cardFor(named("Editor"));
    card->editButton().click();
    card->deleteButton().click();
    card->editTapped();
    card->deleteTapped();
    EXPECT_THAT(desktop.log.calls(), testing::IsEmpty());
}

TEST_F(ShortcutCardViewTest, AClosureMayDestroyTheCard) {
    auto card = cardFor(named("Editor"));
    int calls = 0;
    card->onDelete = [&] {
        card.reset();
        ++calls;
    };
    card->deleteTapped();
    EXPECT_EQ(calls, 1);
}

TEST_F(ShortcutCardViewTest, DestroyingItReleasesBothClosures) {
    auto card = cardFor(named("Editor"));
    const auto forEditing = std::make_shared<int>();
    const auto forDeleting = std::make_shared<int>();
    card->onEdit = [forEditing] {};
    card->onDelete = [forDeleting] {};
    ASSERT_EQ(forEditing.use_count(), 2);
    ASSERT_EQ(forDeleting.use_count(), 2);
    card.reset();
    EXPECT_EQ(forEditing.use_count(), 1);
    EXPECT_EQ(forDeleting.use_count(), 1);
}

TEST_F(ShortcutCardViewTest, AnApplicationThatIsGoneHasTheGenericIcon) {
    QIcon::setThemeName("no such theme");
    QIcon::setFallbackThemeName("");
    const QSize size(32, 32);
    const auto card = cardFor(named("Gone"));
    EXPECT_EQ(card->iconView().icon().pixmap(size, 1.0).toImage(),
              genericApplicationIcon().pixmap(size, 1.0).toImage());
    EXPECT_EQ(card->appNameLabel().text(), "Gone");
}

TEST_F(ShortcutCardViewTest, AnApplicationThatIsGoneIsDimmedAndSaidSo) {
    paint("Gone", Qt::red);
    desktop.applicationBundles.standings["/applications/Gone.desktop"] = platform::Standing::gone;
    speak(Language::english);
    const auto card = cardFor(named("Gone"));
    EXPECT_NE(iconColor(*card), QColor(Qt::red));
    EXPECT_EQ(card->iconView().toolTip(), "This application is gone.");
    EXPECT_EQ(card->accessibleDescription(), "This application is gone.");
    card->setNotice("Another program holds it.");
    EXPECT_EQ(card->accessibleDescription(), "This application is gone. Another program holds it.");
}

TEST_F(ShortcutCardViewTest, ANameCannotBeWrittenBackwards) {
    const std::string override{'\xE2', '\x80', '\xAE'}; // U+202E
    EXPECT_EQ(cardFor(named(override + "gpj.exe"))->appNameLabel().text(), "\\u202egpj.exe");
}

TEST_F(ShortcutCardViewTest, AnEntryThatIsNotTrustedIsDimmedAndSaidSo) {
    desktop.applicationBundles.standings["/applications/Odd.desktop"] =
        platform::Standing::untrusted;
    const auto card = cardFor(named("Odd"));
    EXPECT_TRUE(card->iconView().isDimmed());
    EXPECT_TRUE(card->iconView().toolTip().startsWith("アプリケーションフォルダの外"));
}

TEST_F(ShortcutCardViewTest, ShowsTheIconOfTheApplicationAtItsPath) {
    paint("Editor", Qt::red);
    EXPECT_EQ(iconColor(*cardFor(named("Editor"))), QColor(Qt::red));
}

TEST_F(ShortcutCardViewTest, FontsAreOfTheSizesAndWeightsOfTheDesign) {
    const auto card = cardFor(named("Editor"));
    EXPECT_EQ(card->appNameLabel().font().pixelSize(), 14);
    EXPECT_EQ(card->appNameLabel().font().weight(), QFont::Medium);
    EXPECT_EQ(card->hotkeyBadge().font().pixelSize(), 13);
    EXPECT_EQ(card->hotkeyBadge().font().weight(), QFont::DemiBold);
    EXPECT_TRUE(QFontInfo(card->hotkeyBadge().font()).fixedPitch());
}

TEST_F(ShortcutCardViewTest, ButtonsAreAPencilAndARedTrashCan) {
    const ApplicationPalette colors(lightPalette());
    const auto card = cardFor(named("Editor"));
    EXPECT_TRUE(shows(card->editButton(), Symbol::pencil, SymbolTint::text));
    EXPECT_TRUE(shows(card->deleteButton(), Symbol::trash, SymbolTint::red));
}

TEST_F(ShortcutCardViewTest, ButtonsHaveNoToolTips) {
    const auto card = cardFor(named("Editor"));
    EXPECT_EQ(card->editButton().toolTip(), "");
    EXPECT_EQ(card->deleteButton().toolTip(), "");
}

TEST_F(ShortcutCardViewTest, TextsAreShownAsTheyAreAndNeverAsMarkup) {
    const auto card = cardFor(named("<b>A</b> & B"));
    EXPECT_EQ(card->appNameLabel().textFormat(), Qt::PlainText);
    EXPECT_EQ(card->appNameLabel().shownLines(), QStringList("<b>A</b> & B"));
}

using CardInEachLanguage = WindowInEachLanguage;

INSTANTIATE_TEST_SUITE_P(Languages, CardInEachLanguage,
                         testing::Values(Language::japanese, Language::english), languageName);

TEST_P(CardInEachLanguage, ABadgeShowsTheWholeCombinationHoweverLongTheName) {
    struct Room {
        int width;
        std::uint16_t longestKey;
    };
    for (const auto& [width, longestKey] : {Room{368, 999}, Room{448, 65535}, Room{900, 65535}}) {
        for (const auto& name : {std::string("X"), std::string(300, 'W')}) {
            for (const std::uint16_t key : {std::uint16_t{0}, std::uint16_t{51}, longestKey}) {
                ShortcutCardView card(shortcutFor(name, key, modifierMask));
                card.resize(width, ShortcutCardView::usualHeight);
                card.show();
                settle();
                EXPECT_TRUE(showsItsWholeText(card.hotkeyBadge())) << "in a card of " << width;
            }
        }
    }
}

TEST_P(CardInEachLanguage, ScreenReadersAreToldOfEverything) {
    const ShortcutCardView card(shortcutFor("Editor", 49, command));
    const auto said = [](QWidget& view) {
        return QAccessible::queryAccessibleInterface(&view)->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(said(card.editButton()), inLanguage("編集", "Edit"));
    EXPECT_EQ(said(card.deleteButton()), inLanguage("削除", "Delete"));
    EXPECT_EQ(said(card.appNameLabel()), "Editor");
    EXPECT_EQ(said(card.hotkeyBadge()), " ⌘Space ");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&card.editButton())->role(),
              QAccessible::PushButton);
}

/// Colours as they arrive on the screen.
class CardColors : public ShortcutCardViewTest, public testing::WithParamInterface<bool> {
protected:
    QPalette palette = GetParam() ? darkPalette() : lightPalette();
    ApplicationPalette current{palette};
};

INSTANTIATE_TEST_SUITE_P(Palettes, CardColors, testing::Bool(),
                         [](const auto& test) { return test.param ? "dark" : "light"; });

void expectNear(const QColor& seen, const QColor& wanted) {
    EXPECT_NEAR(seen.red(), wanted.red(), 2);
    EXPECT_NEAR(seen.green(), wanted.green(), 2);
    EXPECT_NEAR(seen.blue(), wanted.blue(), 2);
}

TEST_P(CardColors, TheCardIsTheListsBackgroundInsideAHairline) {
    const QImage image = cardFor(named("X"))->grab().toImage();
    const QColor base = palette.color(QPalette::Base);
    EXPECT_EQ(image.pixelColor(1, 26), base);
    EXPECT_EQ(image.pixelColor(224, 1), base);
    EXPECT_GT(contrastRatio(image.pixelColor(0, 26), base), 1.15);
    expectNear(image.pixelColor(0, 26), laidOver(separatorColor(palette), base));
    EXPECT_EQ(image.pixelColor(0, 26), image.pixelColor(447, 26));
    EXPECT_EQ(image.pixelColor(224, 0), image.pixelColor(224, 51));
}

TEST_P(CardColors, TheCornersAreRound) {
    const QImage image = cardFor(named("X"))->grab().toImage();
    const QColor window = palette.color(QPalette::Window);
    for (const QPoint corner : {QPoint(0, 0), QPoint(447, 0), QPoint(0, 51), QPoint(447, 51)}) {
        EXPECT_EQ(image.pixelColor(corner), window);
    }
    const auto card = cardFor(named("X"));
    expectCorners(*card, 8);
    expectCorners(card->hotkeyBadge(), 4);
}

TEST_P(CardColors, TheBadgesTextIsInTheAccentColour) {
    const auto card = cardFor(named("X"));
    const QImage image = enlarged(card->hotkeyBadge());
    const QColor tint = image.pixelColor(0, image.height() / 2);
    QColor ink = tint;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = image.height() / 4; y < image.height() * 3 / 4; ++y) {
            if (contrastRatio(image.pixelColor(x, y), tint) > contrastRatio(ink, tint)) {
                ink = image.pixelColor(x, y);
            }
        }
    }
    expectNear(ink, accentTextColor(palette));
}

TEST_P(CardColors, TheBadgeIsATenthOfTheAccent) {
    const auto card = cardFor(named("X"));
    const QRect badge = card->hotkeyBadge().geometry();
    const QImage image = card->grab().toImage();
    QColor tint = palette.color(QPalette::Highlight);
    tint.setAlphaF(0.1F);
    expectNear(image.pixelColor(badge.left() + 2, badge.center().y()),
               laidOver(tint, palette.color(QPalette::Base)));
    expectNear(image.pixelColor(badge.topLeft()), palette.color(QPalette::Base));
}

TEST_P(CardColors, AreLegibleWhateverTheAccent) {
    for (const int hue : {0, 60, 120, 180, 240, 300}) {
        const QColor accent = QColor::fromHsv(hue, 255, 255);
        const QPalette colors = GetParam() ? darkPalette(accent) : lightPalette(accent);
        const QColor base = colors.color(QPalette::Base);
        const QColor badge = laidOver(accentTintColor(colors), base);
        EXPECT_GE(contrastRatio(accentTextColor(colors), badge), 4.5) << hue;
        EXPECT_GE(contrastRatio(systemRedColor(colors), base), 3) << hue;
        const QColor window = colors.color(QPalette::Window);
        EXPECT_GE(contrastRatio(laidOver(secondaryLabelColor(colors), window), window), 4.5);
    }
}

TEST_P(CardColors, AnAccentThatIsLegibleStaysAsItIs) {
    const QColor accent = GetParam() ? QColor(120, 190, 255) : QColor(0, 70, 160);
    const QPalette colors = GetParam() ? darkPalette(accent) : lightPalette(accent);
    EXPECT_EQ(accentTextColor(colors), accent);
}

TEST_F(ShortcutCardViewTest, FollowsAPaletteThatComesLater) {
    const ApplicationPalette light(lightPalette());
    const auto card = cardFor(named("X"));
    ASSERT_EQ(card->grab().toImage().pixelColor(224, 5), lightPalette().color(QPalette::Base));
    const ApplicationPalette dark(darkPalette());
    settle();
    EXPECT_EQ(card->grab().toImage().pixelColor(224, 5), darkPalette().color(QPalette::Base));
}

} // namespace

} // namespace hollowfernpike::test
