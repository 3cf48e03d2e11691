#pragma once

#include <QScrollArea>

#include <vector>

namespace hollowfernpike {

class CardStackView;
class ShortcutCardView;

/// The list of cards, which scrolls up and down when it is taller than its room, or a hint while
/// there are none. Draws no background. Main thread only.
class CardScrollView final : public QScrollArea {
public:
    explicit CardScrollView(QWidget* parent = nullptr);

    /// Takes the cards in place of those that were there. If there are none, the hint tells in the
    /// language of now how to add one.
    void setCards(const std::vector<ShortcutCardView*>& cards);

    CardStackView* stackView() const { return stackView_; }

private:
    CardStackView* stackView_;
};

} // namespace hollowfernpike
