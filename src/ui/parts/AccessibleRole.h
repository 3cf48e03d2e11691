#pragma once

#include <QAccessible>

class QWidget;

namespace hollowfernpike {

/// Gives a plain view a role for assistive technology; without one, screen readers pass over the
/// view and its name. To be called before anything else is done with the view: its role is fixed
/// once something has asked for it. Main thread only.
void setAccessibleRole(QWidget& view, QAccessible::Role role);

} // namespace hollowfernpike
