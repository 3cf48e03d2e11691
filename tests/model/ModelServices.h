#pragma once

#include "model/ShortcutStore.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "support/CallLog.h"
#include "support/FakeAccessibilityTrust.h"
#include "support/FakeEventTaps.h"
#include "support/FakeMainQueue.h"
#include "support/FakeProcessActivation.h"
#include "support/FakeRunningApplications.h"
#include "support/FakeTextComparison.h"
#include "support/FakeWindowList.h"
#include "support/FakeWorkspace.h"

#include <sstream>

namespace hollowfernpike::test {

/// The services that the model uses, over the file manager of the test's choice, handed over for as
/// long as this lives. The store goes with it; `restart` makes the next use load its file anew.
class ModelServices {
public:
    explicit ModelServices(platform::FileManager& fileManager)
        : services_{
              .accessibilityTrust = accessibilityTrust_,
              .eventTaps = eventTaps_,
              .fileManager = fileManager,
              .mainQueue = mainQueue_,
              .notificationCenter = notificationCenter,
              .processActivation = processActivation_,
              .runningApplications = runningApplications_,
              .textComparison = textComparison_,
              .windowList = windowList_,
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
    FakeEventTaps eventTaps_{log_};
    FakeMainQueue mainQueue_;
    FakeProcessActivation processActivation_{log_};
    FakeRunningApplications runningApplications_{log_};
    FakeTextComparison textComparison_{log_};
    FakeWindowList windowList_{log_};
    FakeWorkspace workspace_{log_};
    platform::Services services_;
};

} // namespace hollowfernpike::test
