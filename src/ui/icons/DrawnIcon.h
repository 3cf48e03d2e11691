#pragma once

#include <QIcon>

#include <functional>

class QPainter;

namespace hollowfernpike {

/// Draws an icon into a square, with smooth edges. What it changes of the painter is changed back.
using DrawIcon = std::function<void(QPainter& painter, const QRectF& square, QIcon::Mode mode)>;

/// An icon that is drawn anew for every size in which it is asked for.
QIcon drawnIcon(DrawIcon draw);

} // namespace hollowfernpike
