#include "ui/CardStackView.h"

#include "ui/ShortcutCardView.h"
#include "ui/SymbolButton.h"

#include <QVBoxLayout>

#include <algorithm>

namespace hollowfernpike {

CardStackView::CardStackView(QWidget* parent) : QWidget(parent), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(16, 8, 16, 8);
    layout_->setSpacing(8);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void CardStackView::removeArrangedSubviews() {
    if (QWidget* focused = focusWidget()) {
        focused->clearFocus(); // or each view that goes would hand it on to the next
    }
    while (QLayoutItem* item = layout_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
}

void CardStackView::addArrangedSubview(ShortcutCardView* card) {
    layout_->addWidget(card);
}

void CardStackView::addArrangedSubview(QWidget* view) {
    layout_->addWidget(view, 0, Qt::AlignHCenter);
}

std::vector<ShortcutCardView*> CardStackView::cards() const {
    std::vector<ShortcutCardView*> cards;
    for (int index = 0; index < layout_->count(); ++index) {
        if (auto* card = dynamic_cast<ShortcutCardView*>(layout_->itemAt(index)->widget())) {
            cards.push_back(card);
        }
    }
    return cards;
}

std::optional<CardStackView::Place> CardStackView::focusedPlace() const {
    const QWidget* focused = window()->focusWidget();
    const auto shown = cards();
    const auto card = std::ranges::find_if(
        shown, [&](const ShortcutCardView* known) { return known->isAncestorOf(focused); });
    if (focused == nullptr || card == shown.end()) {
        return std::nullopt;
    }
    return Place{.card = static_cast<std::size_t>(card - shown.begin()),
                 .isDeleteButton = focused == &(*card)->deleteButton()};
}

void CardStackView::focusOn(const Place& place) {
    const auto shown = cards();
    const ShortcutCardView& card = *shown.at(std::min(place.card, shown.size() - 1));
    (place.isDeleteButton ? card.deleteButton() : card.editButton()).setFocus();
}

} // namespace hollowfernpike
