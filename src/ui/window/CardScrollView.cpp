#include "ui/window/CardScrollView.h"

#include "app/Language.h"
#include "ui/parts/Labels.h"
#include "ui/window/CardStackView.h"

namespace hollowfernpike {

namespace {

const char* emptyListText() {
    return localized(
        "ショートカットが登録されていません\n「+ ショートカット追加」で追加してください",
        "No shortcuts registered.\nClick \"+ Add Shortcut\" to add one.");
}

} // namespace

CardScrollView::CardScrollView(QWidget* parent)
    : QScrollArea(parent), stackView_(new CardStackView) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(stackView_);
    viewport()->setAutoFillBackground(false);
    stackView_->setAutoFillBackground(false);
}

void CardScrollView::setCards(const std::vector<ShortcutCardView*>& cards) {
    if (cards.empty()) {
        stackView_->setHint(new HintLabel(emptyListText()));
    } else {
        stackView_->setCards(cards);
    }
}

} // namespace hollowfernpike
