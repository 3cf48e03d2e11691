#include "platform/freedesktop/instance/Instance.h"

#include "platform/LocalizedError.h"

#include <utility>

namespace hollowfernpike::freedesktop {

std::unique_ptr<Instance> Instance::become(Names names, const InstanceRequest& request) {
    auto lock = InstanceLock::acquire(names.lock);
    if (!lock) {
        auto handedOver = freedesktop::handOver(names.lock, request);
        if (handedOver.isTaken) {
            return nullptr;
        }
        if (handedOver.isRefused) {
            throw RequestRefused{};
        }
        lock = std::move(handedOver.lock);
    }
    if (!lock) {
        throw platform::LocalizedError("起動中の Hollowfernpike が応答しません",
                                       "Hollowfernpike is running but does not answer");
    }
    return std::unique_ptr<Instance>(new Instance(std::move(names), std::move(lock)));
}

Instance::Publication Instance::publish(const SessionBus& bus, const InstanceRequest& request) {
    service_.emplace(names_.bus, names_.plainAction, bus);
    if (service_->publish() != InstanceService::Outcome::taken) {
        return Publication::done;
    }
    return service_->isOwnerOneOfUs() && service_->handOver(request) ? Publication::handedOver
                                                                     : Publication::impossible;
}

void Instance::listen(platform::RunLoop& runLoop, const InstanceRequestHandler& onRequest,
                      InstanceRequestJudge mayBeDone) {
    lock_->listen(runLoop, onRequest, std::move(mayBeDone));
    if (service_) {
        service_->listen(onRequest);
    }
}

} // namespace hollowfernpike::freedesktop
