#include "platform/x11/taps/EventThread.h"

#include "platform/x11/taps/EventKinds.h"

#include <csignal>
#include <utility>

#include <pthread.h>
#include <sys/socket.h>

namespace hollowfernpike::x11 {

namespace {

/// Signals are handled on the main thread.
void blockSignals() {
    sigset_t all{};
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

void giveKeyboardBack(const Connection& connection, const xcb_generic_event_t& press) {
    const auto time = reinterpret_cast<const xcb_key_press_event_t&>(press).time;
    xcb_ungrab_keyboard(connection.get(), time);
    xcb_flush(connection.get());
}

} // namespace

EventThread::EventThread(const Connection& connection, Receiver receiver)
    : connection_(connection), receiver_(std::move(receiver)), thread_([this] { run(); }) {}

EventThread::~EventThread() {
    stopping_ = true;
    ::shutdown(connection_.descriptor(), SHUT_RD);
    thread_.join();
}

void EventThread::run() {
    blockSignals();
    while (auto* const event = xcb_wait_for_event(connection_.get())) {
        const std::shared_ptr<const xcb_generic_event_t> owned(event, FreeDeleter{});
        if (event->response_type == XCB_KEY_PRESS) {
            giveKeyboardBack(connection_, *event);
        }
        if (event->response_type != 0) {
            receiver_.event(owned);
        }
    }
    if (!stopping_) {
        receiver_.lost();
    }
}

} // namespace hollowfernpike::x11
