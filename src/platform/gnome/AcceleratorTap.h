#pragma once

#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/gnome/ShellExtension.h"
#include "platform/gnome/ShellLaunches.h"

#include <cstddef>
#include <map>
#include <span>
#include <vector>

#include <QList>
#include <QObject>
#include <QString>

namespace hollowfernpike::gnome {

/// An active tap by key combinations that the extension of the shell grabs. They are places on the
/// keyboard, whatever the layout writes there. The shell swallows a bound press, not its key-up. It
/// delivers none behind a locked screen, where it runs no extension of the user's.
///
/// All combinations count as refused while the extension is absent. The tap reports itself disabled
/// when others than before are refused. Refused ones are asked for again whenever the interest or
/// the shell's own combinations change, or the extension comes back.
class AcceleratorTap final : public QObject, public freedesktop::Tap {
public:
    /// Both outlive the tap.
    AcceleratorTap(ShellExtension& extension, ShellLaunches& launches,
                   platform::EventTapCallback callback, void* userInfo);
    AcceleratorTap(const AcceleratorTap&) = delete;
    AcceleratorTap& operator=(const AcceleratorTap&) = delete;
    ~AcceleratorTap() override;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> refusedCombinations() const override;

private:
    struct Binding {
        platform::KeyCombination combination;
        bool isRefused = false; ///< by the last answer
    };

    void start() override;
    void stop() override;
    void bind();
    void take(const QList<bool>& granted);
    void onPressed(const QString& accelerator);

    ShellExtension& extension_;
    ShellLaunches& launches_;
    std::vector<Binding> bindings_;
    std::map<QString, std::size_t> accelerators_; ///< which binding they are for
    unsigned questions_ = 0; ///< asked so far: only the answer to the last one counts
};

} // namespace hollowfernpike::gnome
