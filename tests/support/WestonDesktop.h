#pragma once

#include "support/WaylandDesktop.h"

#include <memory>

namespace hollowfernpike::test {

/// A private session on weston. There is no keyboard, and nobody but their program can tell what
/// windows there are.
class WestonDesktop final : public WaylandDesktop {
public:
    /// Ready for clients on return; throws std::runtime_error with what weston says if it does not
    /// get there.
    WestonDesktop();

private:
    std::unique_ptr<ChildProcess> startCompositor() override;
    bool isReady() override;
};

} // namespace hollowfernpike::test
