#pragma once

#include <QWidget>

class QScrollArea;

namespace hollowfernpike {

/// The management window as a window: it closes on the desktop's key for that, and its list scrolls
/// to whatever the keyboard focus moves to. Closing hides it. Main thread only.
class ManagementWindow final : public QWidget {
public:
    ManagementWindow();

    /// The list, without which nothing scrolls. It must be in the window.
    void setScrollView(QScrollArea* scrollView) { scrollView_ = scrollView; }

private:
    bool focusNextPrevChild(bool next) override;

    QScrollArea* scrollView_ = nullptr;
};

} // namespace hollowfernpike
