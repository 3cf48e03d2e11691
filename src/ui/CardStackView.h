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

    /// Takes all views away. They live on until the event at hand is handled, which may be theirs.
    void removeArrangedSubviews();

    /// Each takes a view and puts it below the others: a card over the whole width, any other in
    /// the middle and as large as it wants to be.
    void addArrangedSubview(ShortcutCardView* card);
    void addArrangedSubview(QWidget* view);

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
    QVBoxLayout* layout_;
};

} // namespace hollowfernpike
