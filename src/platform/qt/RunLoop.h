#pragma once

#include "platform/RunLoop.h"

namespace hollowfernpike::qt {

/// Descriptors watched by Qt's event loop. Needs the application object.
class RunLoop final : public platform::RunLoop {
public:
    std::unique_ptr<platform::Subscription>
    watchReadable(int descriptor, std::function<void()> onReadable) override;
};

} // namespace hollowfernpike::qt
