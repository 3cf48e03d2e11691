#pragma once

#include "ui/parts/Labels.h"
#include "ui/window/WindowTest.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>

namespace hollowfernpike::test {

/// The management window: where things are in it, what its list says, and the Tab key.
class MainWindowTest : public WindowTest {
protected:
    QRect place(const QWidget& view) const { return placeIn(*controller->window(), view); }

    /// Null while there are cards.
    HintLabel* hint() const {
        for (auto* label : controller->stackView()->findChildren<QLabel*>()) {
            if (auto* found = dynamic_cast<HintLabel*>(label)) {
                return found;
            }
        }
        return nullptr;
    }

    /// Moves the focus as the Tab key does, or backwards.
    static void tab(Qt::Key key = Qt::Key_Tab) {
        const auto modifiers = key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    }

    static void fill(int count) {
        for (int number = 0; number < count; ++number) {
            addShortcut("Application " + std::to_string(number), static_cast<std::uint16_t>(number),
                        command);
        }
    }

    int scrolled() const { return controller->scrollView()->verticalScrollBar()->value(); }
};

inline int end(const QRect& rect) {
    return rect.x() + rect.width();
}

inline int bottom(const QRect& rect) {
    return rect.y() + rect.height();
}

} // namespace hollowfernpike::test
