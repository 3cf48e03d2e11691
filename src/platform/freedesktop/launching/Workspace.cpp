#include "platform/freedesktop/launching/Workspace.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/bus/BusCalls.h"
#include "platform/freedesktop/launching/LaunchError.h"
#include "platform/freedesktop/launching/ProgramLaunch.h"

#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

platform::OpenResult failure(const platform::LocalizedError& error) {
    qCDebug(launchingLog, "%s", error.english().c_str());
    return {.processIdentifier = std::nullopt, .error = error};
}

} // namespace

Workspace::Workspace(DesktopEntries& entries, ProcessTable& processes, platform::Windows& windows,
                     platform::LaunchFeedback& feedback, SessionBus* bus,
                     platform::RunLoop& runLoop, platform::MainQueue& mainQueue)
    : entries_(entries), furtherCopies_(processes),
      launches_(windows, feedback, mainQueue,
                [this](const auto& launch) {
                    startInPlaceOfService(launch, noAnswer(launch->entry.path));
                }),
      children_(runLoop), bus_(bus) {}

void Workspace::openApplication(const std::string& path,
                                const platform::OpenConfiguration& configuration,
                                OpenCompletion completion) {
    std::optional<DesktopEntry> entry;
    platform::OpenResult refusal;
    try {
        entry = applicationAt(path);
    } catch (const platform::LocalizedError& error) {
        refusal = failure(error);
    }
    if (entry) {
        open(*entry, configuration.activates, completion);
    } else if (completion) {
        completion(refusal);
    }
}

DesktopEntry Workspace::applicationAt(const std::string& path) {
    auto entry = entries_.entryAt(path);
    if (entry.hidden) {
        throw hiddenApplication(path);
    }
    if (!entries_.isTrusted(path)) {
        throw untrustedEntry(path);
    }
    return entry;
}

void Workspace::open(const DesktopEntry& entry, bool activates, const OpenCompletion& completion) {
    if (launches_.join(entry.stamp, activates, completion)) {
        return;
    }
    const auto launch = launches_.begin(entry, activates, completion);
    if (bus_ != nullptr && isOpenedOverBus(entry)) {
        activateOverBus(launch);
    } else {
        startProgram(launch);
    }
    launches_.track(launch);
}

void Workspace::activateOverBus(const std::shared_ptr<Launch>& launch) {
    bus_->call(activationOf(launch->entry, launch->startupIdentifier),
               [this, weak = std::weak_ptr(launch)](const QDBusMessage& reply) {
                   const auto answered = weak.lock();
                   if (!answered || answered->result) { // the answer comes after the program
                       return;
                   }
                   if (reply.type() != QDBusMessage::ErrorMessage) {
                       launches_.settle(*answered, {});
                   } else {
                       startInPlaceOfService(
                           answered,
                           failedStart(answered->entry.path, reply.errorMessage().toStdString()));
                   }
               });
}

void Workspace::startInPlaceOfService(const std::shared_ptr<Launch>& launch,
                                      const platform::LocalizedError& why) {
    const auto result = failure(why);
    if (launch->entry.words.empty()) {
        launches_.settle(*launch, result);
    } else {
        startProgram(launch);
    }
}

void Workspace::startProgram(const std::shared_ptr<Launch>& launch) {
    if (!furtherCopies_.mayStart(launch->entry.identifier)) {
        qCDebug(launchingLog, "%s: a copy stays beside the first one, no third one is started",
                launch->entry.path.c_str());
        launches_.settle(*launch, {});
        launches_.finish(*launch);
        return;
    }
    StartedProcess process;
    try {
        process = launchProgram(launch->entry, launch->startupIdentifier);
    } catch (const platform::LocalizedError& error) {
        launches_.settle(*launch, failure(error));
        return;
    }
    const auto number = process.number;
    children_.adopt(std::move(process), [this, weak = std::weak_ptr(launch)] {
        if (const auto ended = weak.lock()) {
            launches_.finish(*ended);
        }
    });
    launches_.settle(*launch, {.processIdentifier = number, .error = std::nullopt});
    if (bus_ == nullptr) {
        return;
    }
    if (const auto scope = scopeFor(launch->entry, number)) {
        bus_->call(*scope, {});
    }
}

} // namespace hollowfernpike::freedesktop
