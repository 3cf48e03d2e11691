#pragma once

#include <chrono>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// Whether one of these addresses of a bus is a local socket, and none before it is anything else:
/// connecting to the other transports may reach another machine, take long or start a bus.
bool isLocalBus(std::string_view addresses);

/// Whether the bus at the first of these addresses greets a client within `longest`. Asked on a
/// connection of its own, because the toolkit's calls wait without a bound for a bus that accepts
/// and stays silent. True as well for an address at which nobody listens: that is known at once.
/// From any thread.
bool busAnswers(std::string_view addresses, std::chrono::milliseconds longest);

} // namespace hollowfernpike::freedesktop
