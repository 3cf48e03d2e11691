#pragma once

#include <QLabel>

namespace hollowfernpike {

/// Text that stands back and says what could be here. Main thread only.
class HintLabel final : public QLabel {
public:
    explicit HintLabel(const QString& text, QWidget* parent = nullptr);

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace hollowfernpike
