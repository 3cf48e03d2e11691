#pragma once

#include <QWidget>

#include <cstddef>
#include <optional>
#include <vector>

class QVBoxLayout;

namespace hollowfernpike {

class ShortcutCardView;

/// A column of views, 8 apart, 16 in from the sides and 8 from top and bottom. It is as high as the
/// views need. Main thread only.
class CardStackView final : public QWidget {
public:
    explicit CardStackView(QWidget* parent = nullptr);

    /// Replaces the views. The old ones are destroyed only after the current event, because one of
    /// them may be handling it. Cards take the full width; a hint keeps its size and is centred.
    void setCards(const std::vector<ShortcutCardView*>& cards);
    void setHint(QWidget* hint);

    /// From top to bottom.
    std::vector<ShortcutCardView*> cards() const;

    /// A button of a card, by position, so that it is still known when the cards are replaced.
    struct Place {
        std::size_t card = 0;
        bool isDeleteButton = false;
    };

    /// Where the window's keyboard focus is, if it is in a card.
    std::optional<Place> focusedPlace() const;

    /// Moves the focus there, or to the last card if there are fewer. There must be a card.
    void focusOn(const Place& place);

private:
    void removeViews();

    QVBoxLayout* layout_;
};

} // namespace hollowfernpike
