#include "platform/freedesktop/SessionBus.h"

#include "platform/freedesktop/BaseDirectories.h"
#include "platform/freedesktop/PercentEncoding.h"
#include "platform/freedesktop/SystemCall.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::uint64_t noTimeLimit = UINT64_MAX;

// A socket on this machine is connected at once, and takes what is written to it. Of the others,
// tcp would have to be waited for, and autolaunch starts a bus.
bool isUsable(std::string_view addresses) {
    constexpr std::string_view local = "unix:";
    while (addresses.starts_with(local)) {
        const auto end = addresses.find(';');
        if (end == std::string_view::npos) {
            return true;
        }
        addresses.remove_prefix(end + 1);
    }
    return false;
}

std::optional<std::string> busAddress() {
    const char* const variable = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string_view addresses = variable == nullptr ? "" : variable;
    if (!addresses.empty()) {
        return isUsable(addresses) ? std::optional(std::string{addresses}) : std::nullopt;
    }
    const auto directory = runtimeDirectory();
    std::error_code unknown;
    if (!directory || !std::filesystem::is_socket(*directory / "bus", unknown)) {
        return std::nullopt;
    }
    // D-Bus Specification, "Server Addresses": what else is left as it is.
    return "unix:path=" + percentEncoded((*directory / "bus").native(), R"(-_/.\*)");
}

/// As checked(), for the bus library, which returns the error.
int checkedBus(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), what);
    }
    return result;
}

std::optional<std::string> failureIn(sd_bus_message* reply) {
    const auto* const error = sd_bus_message_get_error(reply);
    if (error == nullptr) {
        return std::nullopt;
    }
    return error->message == nullptr ? error->name : error->message;
}

} // namespace

bool SessionBus::isKnown() {
    return busAddress().has_value();
}

void SessionBus::call(const BusCall& call, const Answer& answer) {
    try {
        if (!isOpen()) {
            disconnect("the session bus is gone");
        }
        if (!isOpen()) { // an answer may have led to a call, and that to a new connection
            connect();
        }
        send(call, answer);
    } catch (const std::system_error& error) {
        if (answer) {
            answer(error.what());
        }
    }
}

bool SessionBus::isOpen() const {
    return connection_ && sd_bus_is_open(connection_.get()) > 0;
}

void SessionBus::connect() {
    const auto address = busAddress();
    if (!address) {
        throw std::system_error(ENOTCONN, std::generic_category(), "there is no session bus");
    }
    sd_bus* made = nullptr;
    checkedBus(sd_bus_new(&made), "no connection");
    Connection connection(made);
    checkedBus(sd_bus_set_address(made, address->c_str()), "address of the session bus");
    checkedBus(sd_bus_set_bus_client(made, 1), "no connection");
    checkedBus(sd_bus_start(made), "session bus");
    watched_ = Descriptor(checked(::fcntl(sd_bus_get_fd(made), F_DUPFD_CLOEXEC, 0)));
    readable_ = runLoop_.watchReadable(watched_.get(), [this] { process(); });
    connection_ = std::move(connection);
}

SessionBus::Message SessionBus::messageFor(const BusCall& call) const {
    sd_bus_message* made = nullptr;
    checkedBus(sd_bus_message_new_method_call(connection_.get(), &made, call.destination.c_str(),
                                              call.object.c_str(), call.interface.c_str(),
                                              call.method.c_str()),
               "call over the session bus");
    Message message(made);
    checkedBus(sd_bus_message_set_auto_start(made, call.startsService ? 1 : 0),
               "starting a service");
    if (call.appendArguments) {
        checkedBus(call.appendArguments(made), "arguments for the session bus");
    }
    return message;
}

void SessionBus::send(const BusCall& call, Answer answer) {
    const auto message = messageFor(call);
    std::list<Pending> added(1);
    added.front().bus = this;
    added.front().answer = std::move(answer);
    sd_bus_slot* slot = nullptr;
    checkedBus(sd_bus_call_async(connection_.get(), &slot, message.get(), &SessionBus::onAnswered,
                                 &added.front(), noTimeLimit),
               "call over the session bus");
    added.front().slot.reset(slot);
    pending_.splice(pending_.end(), added);
}

// An answer may lead to the next call, and that to a new connection.
void SessionBus::process() {
    const Connection processed(sd_bus_ref(connection_.get()));
    int result = 0;
    do {
        result = sd_bus_process(processed.get(), nullptr);
    } while (result > 0);
    if (result < 0 && processed == connection_) {
        disconnect(std::generic_category().message(-result));
    }
}

void SessionBus::disconnect(const std::string& reason) {
    readable_.reset();
    watched_ = Descriptor();
    connection_.reset();
    const auto unanswered = std::exchange(pending_, {});
    for (const auto& call : unanswered) {
        if (call.answer) {
            call.answer(reason);
        }
    }
}

int SessionBus::onAnswered(sd_bus_message* reply, void* pending, sd_bus_error*) {
    auto* const answered = static_cast<Pending*>(pending);
    auto& own = answered->bus->pending_;
    const auto answer = std::move(answered->answer);
    own.remove_if([answered](const Pending& one) { return &one == answered; });
    if (answer) {
        answer(failureIn(reply));
    }
    return 0;
}

} // namespace hollowfernpike::freedesktop
