#include "platform/x11/TrustMessage.h"

#include "platform/FatalError.h"

namespace hollowfernpike::x11 {

platform::LocalizedError trustMessage(TrustProblem problem) {
    switch (problem) {
    case TrustProblem::noDisplay:
        return {"X ディスプレイに接続できないため、ショートカットキーを検出できません。"
                "グラフィカルセッションにログインして起動するか、DISPLAY を設定してください。",
                "Shortcuts cannot be seen: no X display can be reached. "
                "Start the program inside a graphical session, or set DISPLAY."};
    case TrustProblem::restrictedClient:
        return {"X サーバーがこのプログラムにキー入力の監視を許可していません。"
                "信頼されたクライアントとして接続してください (ssh の場合は -X ではなく -Y)。",
                "The X server does not let this program see the keys of other programs. "
                "Connect as a trusted client (with ssh: -Y instead of -X)."};
    case TrustProblem::guestOfWayland:
        return {"Wayland セッションでは、X サーバーから他のプログラムのキー入力を検出できません。"
                "ログイン画面で X11 (Xorg) のセッションを選んでください。",
                "In a Wayland session the X server does not see the keys of other programs. "
                "Choose an X11 (Xorg) session when you log in."};
    }
    platform::fatalError("a trust problem without a message");
}

} // namespace hollowfernpike::x11
