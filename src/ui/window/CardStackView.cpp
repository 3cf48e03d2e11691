#include "ui/window/CardStackView.h"

#include "app/Language.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/Labels.h"
#include "ui/window/ShortcutCardView.h"

#include <QVBoxLayout>

#include <algorithm>

namespace hollowfernpike {

namespace {

const char* emptyListText() {
    return localized(
        "ショートカットが登録されていません\n「+ ショートカット追加」で追加してください",
        "No shortcuts registered.\nClick \"+ Add Shortcut\" to add one.");
}

/// Hides the list while its views are replaced: in a visible list, each view that is added or
/// removed would have the whole list laid out again.
class WhileHidden {
public:
    explicit WhileHidden(QWidget& list) : list_(list) {
        if (QWidget* focused = list_.focusWidget()) {
            focused->clearFocus();
        }
        list_.hide();
    }
    WhileHidden(const WhileHidden&) = delete;
    WhileHidden& operator=(const WhileHidden&) = delete;
    ~WhileHidden() {
        list_.layout()->activate();
        list_.resize(list_.width(), list_.sizeHint().height());
        list_.show();
    }

private:
    QWidget& list_;
};

} // namespace

CardStackView::CardStackView(QWidget* parent) : QWidget(parent), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(16, 8, 16, 8);
    layout_->setSpacing(8);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void CardStackView::setCards(const std::vector<ShortcutCardView*>& cards) {
    const WhileHidden hidden(*this);
    removeViews();
    for (ShortcutCardView* card : cards) {
        layout_->addWidget(card);
    }
    if (cards.empty()) {
        layout_->addWidget(new HintLabel(emptyListText()), 0, Qt::AlignHCenter);
    }
}

void CardStackView::removeViews() {
    while (QLayoutItem* item = layout_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
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
    const auto card = std::ranges::find_if(shown, [&](const ShortcutCardView* known) {
        return known == focused || known->isAncestorOf(focused);
    });
    if (focused == nullptr || card == shown.end()) {
        return std::nullopt;
    }
    Place place{.card = static_cast<std::size_t>(card - shown.begin())};
    if (focused == &(*card)->editButton()) {
        place.part = Place::Part::editButton;
    } else if (focused == &(*card)->deleteButton()) {
        place.part = Place::Part::deleteButton;
    }
    return place;
}

void CardStackView::focusOn(const Place& place) {
    const auto shown = cards();
    ShortcutCardView& card = *shown.at(std::min(place.card, shown.size() - 1));
    switch (place.part) {
    case Place::Part::card:
        card.setFocus();
        break;
    case Place::Part::editButton:
        card.editButton().setFocus();
        break;
    case Place::Part::deleteButton:
        card.deleteButton().setFocus();
        break;
    }
}

} // namespace hollowfernpike
