#include "ui/window/HeaderBar.h"

#include "app/Language.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/LargeButton.h"

#include <QEvent>
#include <QHBoxLayout>

namespace hollowfernpike {

namespace {

constexpr int usualBarHeight = 52;

const char* exportTitle() {
    return localized("エクスポート", "Export");
}

const char* importTitle() {
    return localized("インポート", "Import");
}

} // namespace

HeaderBar::HeaderBar(QWidget* parent)
    : QWidget(parent),
      exportButton_(new SymbolButton(Symbol::squareAndArrowUp, SymbolTint::text, exportTitle())),
      importButton_(new SymbolButton(Symbol::squareAndArrowDown, SymbolTint::text, importTitle())),
      addButton_(new LargeButton) {
    setFixedHeight(grown(usualBarHeight));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 0, 16, 0);
    layout->setSpacing(4);
    layout->addWidget(exportButton_);
    layout->addWidget(importButton_);
    layout->addStretch();
    layout->addWidget(addButton_);
    addButton_->setAutoDefault(true); // Return presses it while it has the focus
    relabel();
}

void HeaderBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        setFixedHeight(grown(usualBarHeight));
    }
    QWidget::changeEvent(event);
}

void HeaderBar::relabel() {
    addButton_->setText(localized("+ ショートカット追加", "+ Add Shortcut"));
    exportButton_->setToolTip(exportTitle());
    importButton_->setToolTip(importTitle());
}

} // namespace hollowfernpike
