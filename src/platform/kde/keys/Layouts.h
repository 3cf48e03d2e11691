#pragma once

#include "platform/freedesktop/bus/SessionBus.h"

#include <cstdint>
#include <functional>
#include <optional>

#include <QDBusServiceWatcher>
#include <QObject>

namespace hollowfernpike::kde {

/// Which of the layouts of its keyboard map KWin uses now (org.kde.KeyboardLayouts on the session
/// bus). Wayland tells that only to the client that has the keys. Main thread only.
class Layouts final : public QObject {
    Q_OBJECT

public:
    /// The bus outlives this object.
    explicit Layouts(freedesktop::SessionBus& bus);

    /// Counted from 0; absent until KWin has told.
    std::optional<std::uint32_t> current() const { return current_; }

    /// Called when current() has changed.
    std::function<void()> onChange;

private:
    Q_SLOT void ask();
    void listen();
    void take(std::uint32_t layout);

    freedesktop::SessionBus& bus_;
    QDBusServiceWatcher service_;
    std::optional<std::uint32_t> current_;
};

} // namespace hollowfernpike::kde
