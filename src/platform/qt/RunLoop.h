#pragma once

#include "platform/RunLoop.h"

#include <QSocketNotifier>

#include <utility>

namespace hollowfernpike::qt {

/// Descriptors watched by Qt's event loop. Needs the application object.
class RunLoop final : public platform::RunLoop {
public:
    std::unique_ptr<platform::Subscription>
    watchReadable(int descriptor, std::function<void()> onReadable) override {
        return std::make_unique<Watch>(descriptor, std::move(onReadable));
    }

private:
    class Watch final : public platform::Subscription {
    public:
        Watch(int descriptor, std::function<void()> onReadable)
            : notifier_(descriptor, QSocketNotifier::Read) {
            QObject::connect(&notifier_, &QSocketNotifier::activated, std::move(onReadable));
        }

    private:
        QSocketNotifier notifier_;
    };
};

} // namespace hollowfernpike::qt
