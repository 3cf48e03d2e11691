#include "platform/qt/RunLoop.h"

#include <QSocketNotifier>

#include <utility>

namespace hollowfernpike::qt {

namespace {

class DescriptorWatch final : public platform::Subscription {
public:
    DescriptorWatch(int descriptor, std::function<void()> onReadable)
        : notifier_(descriptor, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, std::move(onReadable));
    }

private:
    QSocketNotifier notifier_;
};

} // namespace

std::unique_ptr<platform::Subscription> RunLoop::watchReadable(int descriptor,
                                                               std::function<void()> onReadable) {
    return std::make_unique<DescriptorWatch>(descriptor, std::move(onReadable));
}

} // namespace hollowfernpike::qt
