#pragma once

#include "support/GnomeDesktop.h"
#include "support/Keyboard.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::test {

/// The keyboard of a session on GNOME, as remote desktops have one. The layouts are the session's.
///
/// A session has no keyboard before this, and clients lose theirs with the object: make it before
/// the clients and keep it as long as they live.
class GnomeKeyboard final : public Keyboard {
public:
    explicit GnomeKeyboard(GnomeDesktop& desktop);
    GnomeKeyboard(const GnomeKeyboard&) = delete;
    GnomeKeyboard& operator=(const GnomeKeyboard&) = delete;
    ~GnomeKeyboard() override;

    /// To be called once the shell has been started anew, which has no key that is down.
    void reconnect();

    void use(const KeyboardLayout& layout) override;
    void lockGroup(std::uint32_t group) override;
    void sync() const override;

private:
    void sendKey(std::uint32_t keycode, bool isDown) override;
    void waitForMap() const;

    GnomeDesktop& desktop_;
    std::string session_; ///< the object of the remote desktop
};

} // namespace hollowfernpike::test
