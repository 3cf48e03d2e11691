#pragma once

#include "platform/WindowOwners.h"
#include "platform/freedesktop/owners/ProcessFacts.h"

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// A window, the process behind it and the ids of installed entries, as an input describes them.
struct WindowText {
    platform::WindowFacts window;
    freedesktop::ProcessFacts process;
    std::vector<std::string> identifiers;
};

/// Reads a line for each fact: a letter for what it is, a digit for the format of the property
/// that tells it, where one does (8, 1 for 16, 3 for 32 bits, all else for none), and the bytes of
/// its value, in which "|" stands for a zero byte. The properties go the way of a real window's.
///
///     c class   g GTK's application id   k desktop file   p process, as the window says
///     s sandbox, as the display server says               i id of an installed entry
///     f Flatpak's application   u control group   l launched entry   x executable   a argument
WindowText readWindow(std::string_view text);

/// The parts of a text between lines of "%%".
std::vector<std::string_view> partsOf(std::string_view text);

} // namespace hollowfernpike::test
