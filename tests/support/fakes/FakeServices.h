#pragma once

#include "hotkeys/AppLauncher.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/FakeAccessibilityTrust.h"
#include "support/fakes/FakeApplication.h"
#include "support/fakes/FakeApplicationBundles.h"
#include "support/fakes/FakeEventTaps.h"
#include "support/fakes/FakeFileManager.h"
#include "support/fakes/FakeLoginItem.h"
#include "support/fakes/FakeMainQueue.h"
#include "support/fakes/FakeRunningApplications.h"
#include "support/fakes/FakeStatusBar.h"
#include "support/fakes/FakeTextComparison.h"
#include "support/fakes/FakeUserDefaults.h"
#include "support/fakes/FakeWindows.h"
#include "support/fakes/FakeWorkspace.h"

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
