#pragma once

#include <QWidget>

#include <cstddef>
#include <optional>
#include <vector>

class QVBoxLayout;

namespace hollowfernpike {

class ShortcutCardView;

/// A column of cards, 8 apart, 16 in from the sides and 8 from top and bottom. It is as high as the
/// cards need. Main thread only.
class CardStackView final : public QWidget {
public:
    explicit CardStackView(QWidget* parent = nullptr);

    /// Replaces the views. The old ones are destroyed only after the current event, because one of
    /// them may be handling it. Cards take the full width. If there are none, shows a hint how to
    /// add one, in the current language, in its own size and centred.
    void setCards(const std::vector<ShortcutCardView*>& cards);

    /// From top to bottom.
    std::vector<ShortcutCardView*> cards() const;

    /// A card or a button of it, by position, so that it is still known when the cards are
    /// replaced.
    struct Place {
        enum class Part : unsigned char { card, editButton, deleteButton };

        std::size_t card = 0;
        Part part = Part::card;
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
