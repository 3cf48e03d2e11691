#pragma once

#include "platform/freedesktop/files/Descriptor.h"
#include "platform/freedesktop/instance/PrivateDirectory.h"

#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// What the holder of the lock answers to a request that it has.
constexpr std::string_view acknowledgement = "taken\n";

/// Sockets that carry one request and its answer, each in one piece. They never block, and programs
/// that we start do not get them. What fails throws std::system_error.

/// One that accepts connections at this name, in place of a socket that an earlier process left.
/// Whoever sees it there can connect: it is moved there when it is ready.
Descriptor listeningSocket(const PrivateDirectory& directory, const std::string& name);

/// One that is connected to the name; fails if nobody listens there.
Descriptor connectedSocket(const PrivateDirectory& directory, const std::string& name);

} // namespace hollowfernpike::freedesktop
