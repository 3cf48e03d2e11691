#pragma once

#include "support/KWinDesktop.h"
#include "support/Keyboard.h"
#include "support/LentConnection.h"

#include <cstdint>
#include <string>

struct org_kde_kwin_fake_input;

namespace hollowfernpike::test {

/// The keyboard of a session on KWin. The layouts are the session's, and KWin itself derives from
/// the keys what they write.
///
/// A session has no keyboard before this, and clients lose theirs with the object: make it before
/// the clients and keep it as long as they live. It does not outlive KWin.
class KWinKeyboard final : public Keyboard {
public:
    explicit KWinKeyboard(KWinDesktop& desktop);
    KWinKeyboard(const KWinKeyboard&) = delete;
    KWinKeyboard& operator=(const KWinKeyboard&) = delete;
    ~KWinKeyboard() override;

    void use(const KeyboardLayout& layout) override;
    void lockGroup(std::uint32_t group) override;
    void sync() const override { connection_.get().sync(); }

private:
    void sendKey(std::uint32_t keycode, bool isDown) override;
    void openLocks();
    void takeKeyboard();
    void waitForMap();

    KWinDesktop& desktop_;
    LentConnection connection_;
    org_kde_kwin_fake_input* keys_ = nullptr;
    wl_seat* seat_ = nullptr;
    wl_keyboard* keyboard_ = nullptr;
    bool isThere_ = false;
    std::string receivedMap_;
};

} // namespace hollowfernpike::test
