#include "ui/editor/ApplicationPanelTest.h"

#include <QAccessible>
#include <QMouseEvent>

#include <gmock/gmock.h>

#include <string>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace test;

TEST_F(ApplicationPanelTest, ArrowKeysMoveInTheListWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Down);
    EXPECT_EQ(current(panel), "Maps");
    type(searchField(panel), Qt::Key_Up);
    EXPECT_EQ(current(panel), "Mail");
    type(searchField(panel), Qt::Key_M, "m");
    EXPECT_EQ(searchField(panel).text(), "m");
}

TEST_F(ApplicationPanelTest, PageKeysMoveInTheListWhileTyping) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_PageDown);
    EXPECT_EQ(current(panel), "Terminal");
    type(searchField(panel), Qt::Key_PageUp);
    EXPECT_EQ(current(panel), "Calculator");
}

TEST_F(ApplicationPanelTest, ReturnChooses) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Down);
    type(searchField(panel), Qt::Key_Return);
    EXPECT_THAT(chosen_, ElementsAre("/apps/Mail.desktop"));
    EXPECT_FALSE(isOpen());
}

TEST_F(ApplicationPanelTest, ReturnInTheListChoosesOnce) {
    const QDialog& panel = open();
    type(list(panel), Qt::Key_Down);
    type(list(panel), Qt::Key_Return);
    EXPECT_THAT(chosen_, ElementsAre("/apps/Mail.desktop"));
}

TEST_F(ApplicationPanelTest, OpenChooses) {
    const QDialog& panel = open();
    button(panel, "openButton").click();
    EXPECT_THAT(chosen_, ElementsAre("/apps/Calculator.desktop"));
}

TEST_F(ApplicationPanelTest, ADoubleClickChooses) {
    const QDialog& panel = open();
    QListView& view = list(panel);
    const QPointF point = view.visualRect(view.model()->index(2, 0)).center();
    for (const auto kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        QMouseEvent event(kind, point, view.viewport()->mapToGlobal(point), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    EXPECT_THAT(chosen_, ElementsAre("/apps/Maps.desktop"));
}

TEST_F(ApplicationPanelTest, WhatAssistiveTechnologySelectsIsOpened) {
    const QDialog& panel = open();
    auto* const row = QAccessible::queryAccessibleInterface(&list(panel))->child(2);
    ASSERT_EQ(row->text(QAccessible::Name), "Maps");
    row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    button(panel, "openButton").click();
    EXPECT_THAT(chosen_, ElementsAre("/apps/Maps.desktop"));
}

TEST_F(ApplicationPanelTest, NothingIsOpenedWhileNothingIsSelected) {
    const QDialog& panel = open();
    list(panel).clearSelection();
    EXPECT_FALSE(button(panel, "openButton").isEnabled());
    type(searchField(panel), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
    type(searchField(panel), Qt::Key_Down);
    EXPECT_TRUE(button(panel, "openButton").isEnabled());
}

TEST_F(ApplicationPanelTest, EscapeCancels) {
    const QDialog& panel = open();
    type(searchField(panel), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(ApplicationPanelTest, CancelCancels) {
    button(open(), "cancelButton").click();
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(ApplicationPanelTest, IsGoneWhenItsAnswerIsTold) {
    window_->show();
    bool wasOpen = true;
    ApplicationPanel::beginSheet(*window_, [&](const std::string&) { wasOpen = isOpen(); });
    button(*window_->findChild<QDialog*>("applicationPanel"), "openButton").click();
    EXPECT_FALSE(wasOpen);
}

TEST_F(ApplicationPanelTest, IsDestroyedOnceItIsClosed) {
    button(open(), "cancelButton").click();
    EXPECT_TRUE(
        eventually([&] { return window_->findChild<QDialog*>("applicationPanel") == nullptr; }));
}

TEST_F(ApplicationPanelTest, GoesWithItsWindow) {
    open();
    window_.reset();
    turn();
    EXPECT_THAT(chosen_, IsEmpty());
}

} // namespace
} // namespace hollowfernpike
