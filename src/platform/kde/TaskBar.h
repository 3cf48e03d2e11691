#pragma once

#include "platform/wayland/ToolkitGlobal.h"

#include <cstdint>
#include <map>

#include <QObject>

class QWindow;
struct org_kde_plasma_shell;
struct org_kde_plasma_surface;

namespace hollowfernpike::kde {

/// Keeps windows of ours out of task bars and pagers (org_kde_plasma_shell). Main thread only; the
/// toolkit's plug-in must be "wayland".
class TaskBar final : public QObject {
public:
    TaskBar();
    TaskBar(const TaskBar&) = delete;
    TaskBar& operator=(const TaskBar&) = delete;
    ~TaskBar() override;

    /// Whether task bars list the window, which is on the screen already or has yet to come.
    void setShown(QWindow& window, bool shown);

private:
    struct Entry {
        bool isShown = true;
        org_kde_plasma_surface* surface = nullptr; ///< while the window is on the screen
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void apply(QWindow& window);
    void forgetSurface(QObject* window);

    wayland::ToolkitGlobal shell_;
    std::map<QObject*, Entry> entries_;
};

} // namespace hollowfernpike::kde
