#include "app/LaunchAtLogin.h"

#include "model/OneLine.h"
#include "platform/LoginItem.h"
#include "platform/Services.h"

#include <ostream>

namespace hollowfernpike::LaunchAtLogin {

bool isEnabled() {
    return platform::services().loginItem.status() == platform::LoginItemStatus::enabled;
}

void toggle() {
    const auto& services = platform::services();
    try {
        if (isEnabled()) {
            services.loginItem.unregisterItem();
        } else {
            services.loginItem.registerItem();
        }
    } catch (const platform::LocalizedError& error) {
        services.standardOutput << "ログイン時起動の設定変更エラー: " << oneLine(error.japanese())
                                << std::endl;
    }
}

} // namespace hollowfernpike::LaunchAtLogin
