#pragma once

#include <QPushButton>

namespace hollowfernpike {

/// A push button of the large size: 30 high at least, with air beside its text. Main thread only.
class LargeButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override {
        return (QPushButton::sizeHint() + QSize(16, 0)).expandedTo(QSize(0, 30));
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace hollowfernpike
