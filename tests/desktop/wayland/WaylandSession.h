#pragma once

#include "desktop/Combination.h"
#include "desktop/wayland/WaylandPager.h"
#include "support/ChildProcess.h"
#include "support/Keyboard.h"
#include "support/SessionBus.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// A private session on a Wayland desktop, with a keyboard, as stories need it that are the same on
/// every such desktop.
class WaylandSession {
public:
    WaylandSession() = default;
    WaylandSession(const WaylandSession&) = delete;
    WaylandSession& operator=(const WaylandSession&) = delete;
    virtual ~WaylandSession() = default;

    /// What people call the desktop.
    virtual std::string name() const = 0;

    virtual std::filesystem::path home() const = 0;
    virtual std::filesystem::path dataHome() const = 0;
    virtual std::filesystem::path applications() const = 0;
    virtual const Environment& environment() const = 0;

    /// Where the session's user finds a file or program of the tests.
    virtual std::filesystem::path lend(const std::filesystem::path& file) const = 0;

    /// Starts a program in this session.
    virtual std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                                const Environment& changes = {}) const = 0;

    virtual ChildProcess& compositor() = 0;
    virtual SessionBus& bus() = 0;
    virtual Keyboard& keyboard() = 0;
    virtual const WaylandPager& pager() const = 0;

    /// Closes what the utility shows at its start on this desktop, once it is there.
    virtual void closeWelcome() {}

    /// Whether windows see nothing of a bound key when it is let go, either.
    virtual bool swallowsKeyUps() const = 0;

    /// Whether the desktop knows a key by its symbol, not by its place: what has none cannot be
    /// bound, nor what has that of a bound key, and everything is bound anew under another layout.
    virtual bool bindsSymbols() const = 0;

    /// A combination with this key that the desktop leaves to others.
    virtual Combination rare(std::uint16_t keyCode) const = 0;

    /// A combination that the desktop carries out itself, from this call on.
    virtual Combination bindOwn() = 0;

    /// Whether it has carried that out since it was made undone.
    virtual bool hasDoneOwn() const = 0;
    virtual void undoOwn() = 0;
};

/// What a session has of the private desktop that it lives on.
template <class Desktop>
class SessionOn : public WaylandSession {
public:
    template <class... Arguments>
    explicit SessionOn(Arguments&&... arguments) : desktop(std::forward<Arguments>(arguments)...) {}

    Desktop desktop;

    std::filesystem::path home() const override { return desktop.home(); }
    std::filesystem::path dataHome() const override { return desktop.dataHome(); }
    std::filesystem::path applications() const override { return desktop.applications(); }
    const Environment& environment() const override { return desktop.environment(); }
    std::filesystem::path lend(const std::filesystem::path& file) const override {
        return desktop.lend(file);
    }
    std::unique_ptr<ChildProcess> start(const std::vector<std::string>& commandLine,
                                        const Environment& changes) const override {
        return desktop.start(commandLine, changes);
    }
    ChildProcess& compositor() override { return desktop.compositor(); }
    SessionBus& bus() override { return desktop.bus(); }
};

} // namespace hollowfernpike::test
