#pragma once

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

namespace hollowfernpike::test {

using x11::eventCode;
using x11::internAtom;

/// Takes over what the X library has handed out (a reply, an event, an error), and frees it.
template <class T>
x11::Reply<T> held(T* part) {
    return x11::Reply<T>{part};
}

} // namespace hollowfernpike::test
