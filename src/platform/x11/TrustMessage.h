#pragma once

#include "platform/LocalizedError.h"
#include "platform/x11/TrustProblem.h"

namespace hollowfernpike::x11 {

/// What to tell the user: what is missing and what to do about it.
platform::LocalizedError trustMessage(TrustProblem problem);

} // namespace hollowfernpike::x11
