#pragma once

#include "hotkeys/AppLauncher.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "support/CallLog.h"
#include "support/FakeAccessibilityTrust.h"
#include "support/FakeApplication.h"
#include "support/FakeApplicationBundles.h"
#include "support/FakeEventTaps.h"
#include "support/FakeFileManager.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMainQueue.h"
#include "support/FakeRunningApplications.h"
#include "support/FakeStatusBar.h"
#include "support/FakeTextComparison.h"
#include "support/FakeUserDefaults.h"
#include "support/FakeWindows.h"
#include "support/FakeWorkspace.h"

#include <sstream>

namespace hollowfernpike::test {

/// A whole desktop of fakes, handed over for as long as it lives. The shared instances go with it,
/// so that every test begins with new ones.
class FakeServices {
public:
    FakeServices() { platform::setServices(&services_); }
    FakeServices(const FakeServices&) = delete;
    FakeServices& operator=(const FakeServices&) = delete;
    ~FakeServices() {
        platform::SharedInstance<HotkeyManager>::resetForTesting();
        platform::SharedInstance<AppLauncher>::resetForTesting();
        platform::SharedInstance<ShortcutStore>::resetForTesting();
        platform::setServices(nullptr);
    }

    CallLog log;
    FakeAccessibilityTrust accessibilityTrust{log};
    FakeApplication application{log};
    FakeApplicationBundles applicationBundles;
    FakeEventTaps eventTaps{log};
    FakeFileManager fileManager;
    FakeLoginItem loginItem{log};
    FakeMainQueue mainQueue;
    platform::NotificationCenter notificationCenter;
    FakeRunningApplications runningApplications{log};
    FakeStatusBar statusBar{log};
    FakeTextComparison textComparison{log};
    FakeUserDefaults userDefaults;
    FakeWindows windows{log};
    FakeWorkspace workspace{log};
    std::ostringstream standardOutput;

private:
    platform::Services services_{
        .accessibilityTrust = accessibilityTrust,
        .application = application,
        .applicationBundles = applicationBundles,
        .eventTaps = eventTaps,
        .fileManager = fileManager,
        .loginItem = loginItem,
        .mainQueue = mainQueue,
        .notificationCenter = notificationCenter,
        .runningApplications = runningApplications,
        .statusBar = statusBar,
        .textComparison = textComparison,
        .userDefaults = userDefaults,
        .windows = windows,
        .workspace = workspace,
        .standardOutput = standardOutput,
    };
};

} // namespace hollowfernpike::test
