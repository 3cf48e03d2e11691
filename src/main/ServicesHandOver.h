#pragma once

#include "platform/Services.h"

namespace hollowfernpike {

/// Makes platform::services() return these services for as long as it lives.
class ServicesHandOver {
public:
    explicit ServicesHandOver(const platform::Services& services) {
        platform::setServices(&services);
    }
    ServicesHandOver(const ServicesHandOver&) = delete;
    ServicesHandOver& operator=(const ServicesHandOver&) = delete;
    ~ServicesHandOver() { platform::setServices(nullptr); }
};

} // namespace hollowfernpike
