#pragma once

#include <QScrollArea>

#include <vector>

namespace hollowfernpike {

class CardStackView;
class ShortcutCardView;

/// The list of cards, which scrolls vertically, or a hint while there are none. Draws no
/// background. Main thread only.
class CardScrollView final : public QScrollArea {
public:
    explicit CardScrollView(QWidget* parent = nullptr);

    /// Replaces the cards. If there are none, shows a hint how to add one, in the current language.
    void setCards(const std::vector<ShortcutCardView*>& cards);

    CardStackView* stackView() const { return stackView_; }

private:
    CardStackView* stackView_;
};

} // namespace hollowfernpike
