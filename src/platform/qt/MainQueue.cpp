#include "platform/qt/MainQueue.h"

#include <QMetaObject>
#include <QTimer>

#include <utility>

namespace hollowfernpike::qt {

void MainQueue::async(Work work) {
    QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
}

void MainQueue::asyncAfter(std::chrono::milliseconds delay, Work work) {
    // Coarse timers may fire early.
    QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(work));
}

} // namespace hollowfernpike::qt
