#pragma once

#include "ui/icons/IconView.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/Labels.h"
#include "ui/window/ShortcutCardView.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// Checks where everything lies that a card shows, whatever its width.
inline void expectCardConstraints(const ShortcutCardView& card) {
    const auto center = [](const QWidget& view) { return 2 * view.y() + view.height(); };
    const auto end = [](const QWidget& view) { return view.x() + view.width(); };
    const QSize buttonSize(28, 28);
    const int middle = card.QWidget::height();
    EXPECT_EQ(card.QWidget::height(), 52);
    EXPECT_EQ(card.iconView().geometry(), QRect(12, 10, 32, 32));
    EXPECT_EQ(card.appNameLabel().x(), end(card.iconView()) + 12);
    EXPECT_NEAR(center(card.appNameLabel()), middle, 1);
    EXPECT_GE(card.appNameLabel().width(), 100);
    EXPECT_EQ(card.hotkeyBadge().x(), end(card.appNameLabel()) + 12);
    EXPECT_NEAR(center(card.hotkeyBadge()), middle, 1);
    EXPECT_GE(card.editButton().x(), end(card.hotkeyBadge()) + 12);
    EXPECT_EQ(card.editButton().size(), buttonSize);
    EXPECT_EQ(center(card.editButton()), middle);
    EXPECT_EQ(card.deleteButton().x(), end(card.editButton()) + 4);
    EXPECT_EQ(end(card.deleteButton()), card.width() - 12);
    EXPECT_EQ(card.deleteButton().size(), buttonSize);
    EXPECT_EQ(center(card.deleteButton()), middle);
}

} // namespace hollowfernpike::test
