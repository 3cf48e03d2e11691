#include "platform/freedesktop/SessionBus.h"

#include "platform/freedesktop/BaseDirectories.h"

#include <cstdlib>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

// Addresses that would start a bus, or say that there is none, do not count.
std::optional<std::string> busAddress() {
    const char* const variable = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string_view address(orEmpty(variable));
    if (!address.empty()) {
        const bool isUsable = address.find("autolaunch:") == std::string_view::npos &&
                              !address.starts_with("disabled:");
        return isUsable ? std::optional(std::string{address}) : std::nullopt;
    }
    const auto directory = runtimeDirectory();
    std::error_code unknown;
    if (!directory || !std::filesystem::is_socket(*directory / "bus", unknown)) {
        return std::nullopt;
    }
    const TextPointer path(g_dbus_address_escape_value((*directory / "bus").c_str()));
    return std::string{"unix:path="} + path.get();
}

std::string messageOf(GError* error) {
    const ErrorPointer held(error);
    return held->message;
}

struct PendingAnswer {
    int* underWay;
    const bool* isClosing;
    SessionBus::Answer answer;
};

} // namespace

bool SessionBus::isKnown() {
    return busAddress().has_value();
}

SessionBus::~SessionBus() {
    if (!context_) {
        return;
    }
    isClosing_ = true;
    g_cancellable_cancel(cancellable_.get());
    context_->drain([this] { return underWay_ == 0; });
}

bool SessionBus::isConnected() const {
    return connection_ && g_dbus_connection_is_closed(connection_.get()) == FALSE;
}

void SessionBus::call(BusCall call, Answer answer) {
    if (isConnected()) {
        send({std::move(call), std::move(answer)});
        return;
    }
    waiting_.push_back({std::move(call), std::move(answer)});
    if (isConnecting_) {
        return;
    }
    if (const auto address = busAddress()) {
        connect(*address);
    } else {
        answerAll("there is no session bus");
    }
}

void SessionBus::connect(const std::string& address) {
    if (!context_) {
        context_.emplace(runLoop_);
        cancellable_.reset(g_cancellable_new());
    }
    isConnecting_ = true;
    ++underWay_;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    context_->perform([&] {
        g_dbus_connection_new_for_address(address.c_str(), flags, nullptr, cancellable_.get(),
                                          &SessionBus::onConnected, this);
    });
}

void SessionBus::onConnected(GObject*, GAsyncResult* result, gpointer self) {
    auto& bus = *static_cast<SessionBus*>(self);
    GError* failure = nullptr;
    bus.connection_.reset(g_dbus_connection_new_for_address_finish(result, &failure));
    bus.isConnecting_ = false;
    --bus.underWay_;
    if (!bus.connection_) {
        bus.answerAll(messageOf(failure));
        return;
    }
    for (auto& request : std::exchange(bus.waiting_, {})) {
        bus.send(std::move(request));
    }
}

void SessionBus::send(Request request) {
    const auto& call = request.call;
    auto pending = std::make_unique<PendingAnswer>(
        PendingAnswer{&underWay_, &isClosing_, std::move(request.answer)});
    ++underWay_;
    context_->perform([&] {
        g_dbus_connection_call(
            connection_.get(), call.destination.c_str(), call.object.c_str(),
            call.interface.c_str(), call.method.c_str(), call.arguments.get(), nullptr,
            call.startsService ? G_DBUS_CALL_FLAGS_NONE : G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT,
            cancellable_.get(), &SessionBus::onAnswered, pending.release());
    });
}

void SessionBus::onAnswered(GObject* source, GAsyncResult* result, gpointer request) {
    const std::unique_ptr<PendingAnswer> pending(static_cast<PendingAnswer*>(request));
    GError* failure = nullptr;
    const VariantPointer reply(
        g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure));
    --*pending->underWay;
    const auto reason = reply ? std::nullopt : std::optional(messageOf(failure));
    if (pending->answer && !*pending->isClosing) {
        pending->answer(reason);
    }
}

void SessionBus::answerAll(const std::string& failure) {
    for (const auto& request : std::exchange(waiting_, {})) {
        if (request.answer && !isClosing_) {
            request.answer(failure);
        }
    }
}

} // namespace hollowfernpike::freedesktop
