#pragma once

#include <QLabel>

namespace hollowfernpike {

/// A key combination in the accent's colour on a tint of it. Main thread only.
class HotkeyBadge final : public QLabel {
public:
    explicit HotkeyBadge(QWidget* parent = nullptr);

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace hollowfernpike
