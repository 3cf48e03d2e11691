#pragma once

#include "platform/x11/server/Connection.h"
#include "platform/x11/server/Reply.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace hollowfernpike::x11 {

/// Reads the events of a connection as they come, on a thread of its own. A grabbed key press
/// freezes the keyboard for everybody; this thread gives it back at once, however busy the rest of
/// the process is. It never waits for another thread.
class EventThread {
public:
    /// Both are called on the thread and must not block. `lost` is the last call, made when the
    /// server is gone.
    struct Receiver {
        std::function<void(std::shared_ptr<const xcb_generic_event_t>)> event;
        std::function<void()> lost;
    };

    /// The connection must outlive this object.
    EventThread(const Connection& connection, Receiver receiver);
    EventThread(const EventThread&) = delete;
    EventThread& operator=(const EventThread&) = delete;

    /// Hands over what has arrived and ends the thread. The connection cannot be used afterwards.
    ~EventThread();

private:
    void run();

    const Connection& connection_;
    Receiver receiver_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace hollowfernpike::x11
