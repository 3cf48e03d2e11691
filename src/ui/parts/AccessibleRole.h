#pragma once

#include <QAccessible>

class QWidget;

namespace hollowfernpike {

/// Tells assistive technology what a view of ours is; without it, a plain view is only filling
/// between others, and screen readers pass over its name. To be called first of
/// all: once somebody has asked what the view is, it stays so. Main thread only.
void setAccessibleRole(QWidget& view, QAccessible::Role role);

} // namespace hollowfernpike
