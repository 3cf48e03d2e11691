#pragma once

#include "platform/MainQueue.h"

#include <QObject>

namespace hollowfernpike::qt {

/// The main queue on Qt's event loop. Made on the thread that becomes the main one.
class MainQueue final : public platform::MainQueue {
public:
    void async(Work work) override;
    void asyncAfter(std::chrono::milliseconds delay, Work work) override;

private:
    QObject context_; // waiting work is dropped with it
};

} // namespace hollowfernpike::qt
