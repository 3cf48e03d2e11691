#include "main/Program.h"

#include "hotkeys/HotkeyManager.h"

namespace hollowfernpike {

Program::Program(platform::UserDefaults& userDefaults, qt::TerminationSignals& terminationSignals)
    : userDefaults_(userDefaults) {
    toolkitTexts_.setLanguage(Language::current().rawValue());
    application_.setDelegate(&delegate_);
    application_.setActivationPolicy(platform::ActivationPolicy::accessory);
    terminationSignals.watch(runLoop_, [this] { application_.terminate(); });
}

void Program::perform(const std::string& action, const std::string& startupIdentifier) {
    mainQueue_.async([this, action, startupIdentifier] {
        if (!startupIdentifier.empty() && isLive()) {
            applications()->endStartup(startupIdentifier);
        }
        application_.performAction(action.empty() ? defaultAction : action);
    });
}

int Program::run(const std::string& action) {
    mainQueue_.async([this] { prepare(); });
    if (!action.empty()) {
        perform(action, {});
    }
    return application_.run();
}

xcb_connection_t* Program::toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

void Program::prepare() {
    if (isLive()) {
        applications()->prepare();
    }
}

bool Program::isLive() {
    return HotkeyManager::shared().eventTap() != nullptr && applications() != nullptr;
}

X11Applications* Program::applications() {
    if (!applications_) {
        if (auto connection = x11::Connection::open()) {
            applications_.emplace(std::move(connection), entries_, userTime_, mainQueue_, runLoop_);
        }
    }
    return applications_ ? &*applications_ : nullptr;
}

const ApplicationServices* Program::applicationServices() {
    const auto* found = applications();
    return found == nullptr ? nullptr : &found->services();
}

} // namespace hollowfernpike
