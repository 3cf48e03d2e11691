#pragma once

#include "platform/MainQueue.h"

#include <QMetaObject>
#include <QObject>
#include <QTimer>

#include <utility>

namespace hollowfernpike::qt {

/// The main queue on Qt's event loop. Made on the thread that becomes the main one.
class MainQueue final : public platform::MainQueue {
public:
    void async(Work work) override {
        QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
    }

    void asyncAfter(std::chrono::milliseconds delay, Work work) override {
        // Coarse timers may fire early.
        QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(work));
    }

private:
    QObject context_; // waiting work is dropped with it
};

} // namespace hollowfernpike::qt
