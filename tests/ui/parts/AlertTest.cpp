#include "ui/parts/Alert.h"
#include "ui/editor/EditorTest.h"
#include "ui/icons/Symbols.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

namespace hollowfernpike {

namespace {

using testing::SizeIs;
using namespace test;

class AlertTest : public EditorTest {
protected:
    AlertTest() { window_->show(); }

    static Alert question() {
        return {
            .message = "Delete?", .informativeText = "For good.", .buttons = {"Delete", "Keep"}};
    }

    QMessageBox& present(const Alert& alert) {
        alert.beginSheet(*window_, [this](int button) { pressed_ = button; });
        return *window_->findChildren<QMessageBox*>().back();
    }

    static QPushButton& buttonCalled(const QMessageBox& box, const QString& title) {
        for (QAbstractButton* button : box.buttons()) {
            if (button->text() == title) {
                return *qobject_cast<QPushButton*>(button);
            }
        }
        throw std::invalid_argument(title.toStdString());
    }

    static void press(QWidget& widget, int key) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&widget, &event);
        }
    }

    static QImage pictureIn(const QMessageBox& box) {
        for (const QLabel* label : box.findChildren<QLabel*>()) {
            if (const QPixmap pixmap = label->pixmap(Qt::ReturnByValue); !pixmap.isNull()) {
                return pixmap.toImage();
            }
        }
        return {};
    }

    std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
    std::optional<int> pressed_;
};

TEST_F(AlertTest, ShowsItsTexts) {
    const QMessageBox& box = present(question());
    EXPECT_TRUE(box.isVisible());
    EXPECT_EQ(box.text(), "Delete?");
    EXPECT_EQ(box.informativeText(), "For good.");
    EXPECT_EQ(box.accessibleName(), "Delete?");
    EXPECT_EQ(box.accessibleDescription(), "For good.");
}

TEST_F(AlertTest, ExplainsInAColumnThatIsWideEnoughForTheWords) {
    const auto width = [this](const char* explanation) {
        return present({.message = "No.", .informativeText = explanation}).width();
    };
    const int narrow = width("So.");
    EXPECT_GE(width("It has been so since the beginning, and there is nothing to be done."),
              narrow + 150);
    EXPECT_EQ(width("So."), narrow);
}

TEST_F(AlertTest, ShowsMarkupAsItIs) {
    const QMessageBox& box =
        present({.message = "<b>bold</b>", .informativeText = "<i>italic</i>"});
    for (const QLabel* label : box.findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    EXPECT_EQ(box.text(), "<b>bold</b>");
}

TEST_F(AlertTest, BelongsToItsWindowAloneAndDoesNotBlock) {
    const QMessageBox& box = present(question());
    EXPECT_EQ(box.windowModality(), Qt::WindowModal);
    EXPECT_EQ(box.parentWidget(), window_.get());
    EXPECT_EQ(pressed_, std::nullopt);
}

TEST_F(AlertTest, TheFirstButtonIsTheDefaultOne) {
    const QMessageBox& box = present(question());
    EXPECT_EQ(box.defaultButton(), &buttonCalled(box, "Delete"));
}

TEST_F(AlertTest, TellsWhichButtonWasPressed) {
    for (const auto& [title, index] : {std::pair("Delete", 0), std::pair("Keep", 1)}) {
        pressed_.reset();
        buttonCalled(present(question()), title).click();
        EXPECT_TRUE(eventually([&] { return pressed_.has_value(); }));
        EXPECT_EQ(pressed_, index);
    }
}

TEST_F(AlertTest, TellsWhichOfThreeButtonsWasPressed) {
    const Alert alert{.message = "Save?", .buttons = {"Save", "Discard", "Cancel"}};
    buttonCalled(present(alert), "Discard").click();
    EXPECT_TRUE(eventually([&] { return pressed_ == 1; }));
}

TEST_F(AlertTest, ReturnPressesTheFirstButton) {
    press(present(question()), Qt::Key_Return);
    EXPECT_TRUE(eventually([&] { return pressed_ == 0; }));
}

TEST_F(AlertTest, EscapePressesTheLastButton) {
    press(present(question()), Qt::Key_Escape);
    EXPECT_TRUE(eventually([&] { return pressed_ == 1; }));
}

TEST_F(AlertTest, EscapePressesTheOnlyButton) {
    press(present({.message = "Done."}), Qt::Key_Escape);
    EXPECT_TRUE(eventually([&] { return pressed_ == 0; }));
}

TEST_F(AlertTest, ClosingPressesTheLastButton) {
    present(question()).close();
    EXPECT_TRUE(eventually([&] { return pressed_ == 1; }));
}

TEST_F(AlertTest, IsGoneWhenItsAnswerIsTold) {
    bool wasVisible = true;
    question().beginSheet(*window_, [&](int) {
        const auto* box = window_->findChild<QMessageBox*>();
        wasVisible = box != nullptr && box->isVisible();
        pressed_ = 0;
    });
    buttonCalled(*window_->findChild<QMessageBox*>(), "Keep").click();
    EXPECT_EQ(pressed_, std::nullopt);
    EXPECT_TRUE(eventually([&] { return pressed_.has_value(); }));
    EXPECT_FALSE(wasVisible);
}

TEST_F(AlertTest, TheHandlerOfTheAnswerMayDestroyTheWindow) {
    question().beginSheet(*window_, [this](int) { window_.reset(); });
    buttonCalled(*window_->findChild<QMessageBox*>(), "Delete").click();
    EXPECT_TRUE(eventually([&] { return window_ == nullptr; }));
}

TEST_F(AlertTest, GoesWithItsWindowAndTellsNobody) {
    present(question()).accept();
    window_.reset();
    turn();
    EXPECT_EQ(pressed_, std::nullopt);
}

TEST_F(AlertTest, NeedsNobodyToTell) {
    question().beginSheet(*window_);
    buttonCalled(*window_->findChild<QMessageBox*>(), "Delete").click();
    EXPECT_TRUE(eventually([&] { return window_->findChild<QMessageBox*>() == nullptr; }));
}

TEST_F(AlertTest, HasOneButtonUnlessToldOtherwise) {
    const QMessageBox& box = present({.message = "Done."});
    ASSERT_THAT(box.buttons(), SizeIs(1));
    EXPECT_EQ(box.buttons().front()->text(), "OK");
}

TEST_F(AlertTest, AnAmpersandInATitleIsShown) {
    const QMessageBox& box = present({.message = "?", .buttons = {"This & that"}});
    EXPECT_EQ(box.buttons().front()->text(), "This && that");
    EXPECT_TRUE(box.buttons().front()->shortcut().isEmpty());
}

TEST_F(AlertTest, ItsStyleChoosesThePicture) {
    EXPECT_EQ(present({.style = Alert::Style::warning, .message = "?"}).icon(),
              QMessageBox::Warning);
    delete window_->findChild<QMessageBox*>();
    EXPECT_EQ(present({.style = Alert::Style::informational, .message = "."}).icon(),
              QMessageBox::Information);
}

TEST_F(AlertTest, AnIconOfItsOwnReplacesThePicture) {
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::magenta);
    const QMessageBox& box = present({.message = "?", .icon = QIcon(pixmap)});
    const QImage shown = pictureIn(box);
    ASSERT_FALSE(shown.isNull());
    EXPECT_EQ(shown.pixelColor(shown.rect().center()), QColor(Qt::magenta));
}

TEST_F(AlertTest, ThePictureIsOursWhereTheThemeHasNone) {
    QIcon::setThemeName("no such theme");
    QIcon::setFallbackThemeName("");
    const QImage warning = pictureIn(present({.message = "?"}));
    delete window_->findChild<QMessageBox*>();
    const QImage information =
        pictureIn(present({.style = Alert::Style::informational, .message = "."}));
    EXPECT_EQ(warning,
              symbolImage(Symbol::exclamationmarkTriangle).pixmap(warning.size()).toImage());
    EXPECT_EQ(information, symbolImage(Symbol::infoCircle).pixmap(information.size()).toImage());
}

TEST_F(AlertTest, ALongPathDoesNotWidenTheWindow) {
    const std::string path = "/" + std::string(2000, 'x');
    QMessageBox& box = present({.message = "?", .informativeText = path});
    box.adjustSize();
    EXPECT_LE(box.width(), 640);
    EXPECT_EQ(box.informativeText().remove(QChar(0x200B)).toStdString(), path);
}

TEST_F(AlertTest, OrdinaryTextsStayAsTheyAre) {
    const std::string text = "ショートカットを削除しますか？ この操作は取り消せません。 "
                             "A sentence whose words are all of the usual length, and then some.";
    EXPECT_EQ(present({.message = text}).text().toStdString(), text);
}

TEST_F(AlertTest, RunsByItselfUntilItIsAnswered) {
    QMetaObject::invokeMethod(
        qApp,
        [] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            buttonCalled(*box, "Keep").click();
        },
        Qt::QueuedConnection);
    EXPECT_EQ(question().runModal(), 1);
}

TEST_F(AlertTest, RunningByItselfTheFirstButtonIsTheFirstAnswer) {
    QMetaObject::invokeMethod(
        qApp, [] { press(*QApplication::activeModalWidget(), Qt::Key_Return); },
        Qt::QueuedConnection);
    EXPECT_EQ(question().runModal(), 0);
}

} // namespace
} // namespace hollowfernpike
