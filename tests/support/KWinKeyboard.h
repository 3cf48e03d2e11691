#pragma once

#include "support/KWinDesktop.h"
#include "support/Keyboard.h"

#include <cstdint>
#include <memory>

namespace hollowfernpike::test {

/// The keyboard of a session on KWin. The layouts are the session's, and KWin itself derives from
/// the keys what they write.
///
/// A session has no keyboard before this, and clients lose theirs with the object: make it before
/// the clients and keep it as long as they live.
class KWinKeyboard final : public Keyboard {
public:
    explicit KWinKeyboard(KWinDesktop& desktop);
    KWinKeyboard(const KWinKeyboard&) = delete;
    KWinKeyboard& operator=(const KWinKeyboard&) = delete;
    ~KWinKeyboard() override;

    /// To be called once KWin has been started anew, which has no key that is down.
    void reconnect();

    void use(const KeyboardLayout& layout) override;
    void lockGroup(std::uint32_t group) override;
    void sync() const override;

private:
    class Wire; ///< the connection to KWin, and what it is for

    void sendKey(std::uint32_t keycode, bool isDown) override;
    void waitForMap();

    KWinDesktop& desktop_;
    std::unique_ptr<Wire> wire_;
};

} // namespace hollowfernpike::test
