// GNUstep asks for this header of another runtime; Debian has these functions in a library of their
// own.
#pragma once

#include <Block.h>
