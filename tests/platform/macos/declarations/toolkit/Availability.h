// What the toolkit asks of this header.
#pragma once

#define __MAC_OS_X_VERSION_MIN_REQUIRED 120000
#define __MAC_OS_X_VERSION_MAX_ALLOWED 140000
