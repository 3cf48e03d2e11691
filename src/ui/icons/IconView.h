#pragma once

#include <QIcon>
#include <QWidget>

namespace hollowfernpike {

/// Shows an icon as large as fits, scaled up or down in proportion and centred. Main thread only.
class IconView final : public QWidget {
public:
    explicit IconView(QWidget* parent = nullptr) : QWidget(parent) {}

    const QIcon& icon() const { return icon_; }

    /// An empty icon shows nothing.
    void setIcon(const QIcon& icon);

private:
    void paintEvent(QPaintEvent* event) override;

    QIcon icon_;
};

} // namespace hollowfernpike
