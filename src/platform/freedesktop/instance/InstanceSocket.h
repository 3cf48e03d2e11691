#pragma once

#include "platform/freedesktop/files/Descriptor.h"
#include "platform/freedesktop/instance/PrivateDirectory.h"

#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// The lock holder's answer to a request that it has received.
constexpr std::string_view acknowledgement = "taken\n";

/// Sockets that carry one request and its answer, each in one piece. They never block, and programs
/// that we start do not inherit them. Failures throw std::system_error.

/// A socket that listens at this name, in place of one that an earlier process left. It gets the
/// name only once it listens, so a process that finds it there can connect.
Descriptor listeningSocket(const PrivateDirectory& directory, const std::string& name);

/// A socket that is connected to the one at this name; fails if nobody listens there.
Descriptor connectedSocket(const PrivateDirectory& directory, const std::string& name);

} // namespace hollowfernpike::freedesktop
