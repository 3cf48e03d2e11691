#pragma once

#include <QWidget>

#include <cstddef>
#include <optional>
#include <vector>

class QVBoxLayout;

namespace hollowfernpike {

class ShortcutCardView;

/// The views of a list one below the other, 8 apart, 16 in from the sides and 8 from top and
/// bottom, and as high as they need. Main thread only.
class CardStackView final : public QWidget {
public:
    explicit CardStackView(QWidget* parent = nullptr);

    /// Takes the views in place of those that were there, which live on until the event at hand is
    /// handled: it may be theirs. Cards are as wide as there is room, the hint as large as it wants
    /// to be and in the middle.
    void setCards(const std::vector<ShortcutCardView*>& cards);
    void setHint(QWidget* hint);

    /// From top to bottom.
    std::vector<ShortcutCardView*> cards() const;

    /// A button of a card, as a place that outlives them.
    struct Place {
        std::size_t card = 0;
        bool isDeleteButton = false;
    };

    /// Where the window's keyboard focus is, if it is in a card.
    std::optional<Place> focusedPlace() const;

    /// Moves the focus there, or to the last card if there are fewer. Needs a card.
    void focusOn(const Place& place);

private:
    void removeViews();

    QVBoxLayout* layout_;
};

} // namespace hollowfernpike
