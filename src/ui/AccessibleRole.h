#pragma once

#include <QAccessible>

class QWidget;

namespace hollowfernpike {

/// Tells assistive technology what a view of ours is; without it, a plain view is only filling
/// between others, and screen readers pass over its name. To be called before the view is shown.
/// Main thread only.
void setAccessibleRole(QWidget& view, QAccessible::Role role);

} // namespace hollowfernpike
