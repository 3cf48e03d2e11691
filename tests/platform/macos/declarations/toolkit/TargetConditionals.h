// What the toolkit asks of this header.
#pragma once

#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
#define TARGET_OS_WATCH 0
#define TARGET_OS_TV 0
