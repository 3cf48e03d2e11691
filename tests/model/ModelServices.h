#pragma once

#include "model/ShortcutStore.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/FakeAccessibilityTrust.h"
#include "support/fakes/FakeApplication.h"
#include "support/fakes/FakeApplicationBundles.h"
#include "support/fakes/FakeEventTaps.h"
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

/// The services that the model uses, over the file manager of the test's choice, handed over for as
/// long as this lives. The store goes with it; `restart` makes the next use load its file anew.
class ModelServices {
public:
    explicit ModelServices(platform::FileManager& fileManager)
        : services_{
              .accessibilityTrust = accessibilityTrust_,
              .application = application_,
              .applicationBundles = applicationBundles_,
              .eventTaps = eventTaps_,
              .fileManager = fileManager,
              .loginItem = loginItem_,
              .mainQueue = mainQueue_,
              .notificationCenter = notificationCenter,
              .runningApplications = runningApplications_,
              .statusBar = statusBar_,
              .textComparison = textComparison_,
              .userDefaults = userDefaults_,
              .windows = windows_,
              .workspace = workspace_,
              .standardOutput = standardOutput,
          } {
        platform::setServices(&services_);
    }
    ModelServices(const ModelServices&) = delete;
    ModelServices& operator=(const ModelServices&) = delete;
    ~ModelServices() {
        restart();
        platform::setServices(nullptr);
    }

    static void restart() { platform::SharedInstance<ShortcutStore>::resetForTesting(); }

    platform::NotificationCenter notificationCenter;
    std::ostringstream standardOutput;

private:
    CallLog log_;
    FakeAccessibilityTrust accessibilityTrust_{log_};
    FakeApplication application_{log_};
    FakeApplicationBundles applicationBundles_;
    FakeEventTaps eventTaps_{log_};
    FakeLoginItem loginItem_{log_};
    FakeMainQueue mainQueue_;
    FakeRunningApplications runningApplications_{log_};
    FakeStatusBar statusBar_{log_};
    FakeTextComparison textComparison_{log_};
    FakeUserDefaults userDefaults_;
    FakeWindows windows_{log_};
    FakeWorkspace workspace_{log_};
    platform::Services services_;
};

} // namespace hollowfernpike::test
