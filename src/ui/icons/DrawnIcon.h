#pragma once

#include <QIcon>

#include <functional>

class QPainter;

namespace hollowfernpike {

/// Draws an icon into a square. The painter smooths edges; its state is restored afterwards.
using DrawIcon = std::function<void(QPainter& painter, const QRectF& square, QIcon::Mode mode)>;

/// An icon that is drawn anew for every size in which it is asked for.
QIcon drawnIcon(DrawIcon draw);

} // namespace hollowfernpike
