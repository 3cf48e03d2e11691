#include "desktop/sway/SwaySession.h"

namespace hollowfernpike::test {

Combination SwaySession::bindOwn() {
    desktop.configure("bindsym Mod4+Return exec touch " + sign().string());
    desktop.ipc().reload();
    return {36, command};
}

} // namespace hollowfernpike::test
