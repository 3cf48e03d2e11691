#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/GlibPointers.h"
#include "platform/freedesktop/MainContext.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// A method of an object on the bus, and what to call it with.
struct BusCall {
    std::string destination;
    std::string object;
    std::string interface;
    std::string method;
    VariantPointer arguments;  ///< a tuple; null for none
    bool startsService = true; ///< the bus may start the destination
};

/// The user's session bus. Connects with the first call, without ever waiting for it, and never
/// starts a bus where there is none. Main thread only.
class SessionBus {
public:
    /// Runs exactly once, on the main thread, inside or after the call: with nothing on success,
    /// else with the reason. May be empty.
    using Answer = std::function<void(const std::optional<std::string>& failure)>;

    /// The loop outlives this.
    explicit SessionBus(platform::RunLoop& runLoop) : runLoop_(runLoop) {}
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    /// Answers to calls under way are dropped.
    ~SessionBus();

    /// Whether this session has a bus, as far as its environment tells.
    static bool isKnown();

    void call(BusCall call, Answer answer);

private:
    struct Request {
        BusCall call;
        Answer answer;
    };

    bool isConnected() const;
    void connect(const std::string& address);
    void send(Request request);
    void answerAll(const std::string& failure);

    static void onConnected(GObject* source, GAsyncResult* result, gpointer self);
    static void onAnswered(GObject* source, GAsyncResult* result, gpointer request);

    platform::RunLoop& runLoop_;
    std::optional<MainContext> context_;
    ObjectPointer<GCancellable> cancellable_;
    ObjectPointer<GDBusConnection> connection_;
    std::vector<Request> waiting_;
    int underWay_ = 0; ///< answers that GLib owes us
    bool isConnecting_ = false;
    bool isClosing_ = false;
};

} // namespace hollowfernpike::freedesktop
