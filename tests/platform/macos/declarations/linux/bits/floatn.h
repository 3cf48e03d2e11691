// This machine's C library asks the compiler for a type that there is none of on macOS.
#pragma once

#define __HAVE_FLOAT128 0
#define __HAVE_DISTINCT_FLOAT128 0
#define __HAVE_FLOAT64X 0
#define __HAVE_FLOAT64X_LONG_DOUBLE 0

#include <bits/floatn-common.h>
