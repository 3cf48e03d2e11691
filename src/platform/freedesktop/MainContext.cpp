#include "platform/freedesktop/MainContext.h"

namespace hollowfernpike::freedesktop {

namespace {

// The descriptor by which other threads wake the context.
int wakeUpDescriptor(GMainContext* context) {
    gint priority = 0;
    gint timeout = 0;
    GPollFD descriptor{.fd = -1, .events = 0, .revents = 0};
    g_main_context_acquire(context);
    g_main_context_prepare(context, &priority);
    g_main_context_query(context, G_MAXINT, &timeout, &descriptor, 1);
    g_main_context_release(context);
    return descriptor.fd;
}

} // namespace

MainContext::MainContext(platform::RunLoop& runLoop)
    : context_(g_main_context_new_with_flags(G_MAIN_CONTEXT_FLAGS_OWNERLESS_POLLING)),
      watch_(runLoop.watchReadable(wakeUpDescriptor(context_.get()), [this] { iterate(); })) {}

MainContext::~MainContext() = default;

void MainContext::perform(const std::function<void()>& work) const {
    g_main_context_push_thread_default(context_.get());
    work();
    g_main_context_pop_thread_default(context_.get());
}

void MainContext::drain(const std::function<bool()>& isDone) const {
    while (!isDone()) {
        g_main_context_iteration(context_.get(), TRUE);
    }
}

void MainContext::iterate() const {
    while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
    }
}

} // namespace hollowfernpike::freedesktop
