#pragma once

// libxcb names a field of this header `explicit`.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
