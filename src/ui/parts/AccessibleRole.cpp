#include "ui/parts/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace hollowfernpike {

namespace {

constexpr auto roleProperty = "accessibleRole";

QAccessibleInterface* viewWithRole(const QString& /*className*/, QObject* object) {
    auto* const view = qobject_cast<QWidget*>(object);
    if (view == nullptr) {
        return nullptr;
    }
    const QVariant role = view->property(roleProperty);
    return role.isValid()
               ? new QAccessibleWidget(view, static_cast<QAccessible::Role>(role.toInt()))
               : nullptr;
}

} // namespace

void setAccessibleRole(QWidget& view, QAccessible::Role role) {
    QAccessible::installFactory(&viewWithRole); // repeated calls install it only once
    view.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace hollowfernpike
