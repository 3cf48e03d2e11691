#include "platform/x11/TrustProblem.h"

#include "platform/FatalError.h"
#include "platform/x11/keyboard/Xkb.h"

#include <string_view>
#include <utility>

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

namespace {

/// The first version with raw events that are seen in spite of grabs.
constexpr std::pair<std::uint16_t, std::uint16_t> neededXInput{2, 1};

bool offersXkb(const Connection& connection) {
    if (!connection.hasExtension(xcb_xkb_id)) {
        return false;
    }
    const auto reply = awaitReply<xcb_xkb_use_extension_reply>(
        connection.get(),
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION));
    return reply && reply->supported != 0;
}

bool offersXInput(const Connection& connection) {
    if (!connection.hasExtension(xcb_input_id)) {
        return false;
    }
    const auto reply = awaitReply<xcb_input_xi_query_version_reply>(
        connection.get(),
        xcb_input_xi_query_version(connection.get(), neededXInput.first, neededXInput.second));
    return reply && std::pair{reply->major_version, reply->minor_version} >= neededXInput;
}

bool hasXwaylandExtension(const Connection& connection) {
    constexpr std::string_view name = "XWAYLAND";
    const auto reply = awaitReply<xcb_query_extension_reply>(
        connection.get(),
        xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()),
                            name.data()));
    return reply && reply->present != 0;
}

/// An Xwayland that is too old for the extension is recognised by the names of its devices.
bool hasXwaylandDevice(const Connection& connection) {
    const auto reply = awaitReply<xcb_input_xi_query_device_reply>(
        connection.get(), xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL));
    if (!reply) {
        return false;
    }
    for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
         xcb_input_xi_device_info_next(&device)) {
        const std::string_view name(xcb_input_xi_device_info_name(device.data),
                                    device.data->name_len);
        if (name.starts_with("xwayland-")) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<TrustProblem> findTrustProblem(const Connection* connection) {
    if (connection == nullptr) {
        return TrustProblem::noDisplay;
    }
    const bool offered = offersXkb(*connection) && offersXInput(*connection);
    if (connection->isLost()) {
        return TrustProblem::noDisplay;
    }
    if (!offered) {
        return TrustProblem::restrictedClient;
    }
    if (hasXwaylandExtension(*connection) || hasXwaylandDevice(*connection)) {
        return TrustProblem::guestOfWayland;
    }
    return std::nullopt;
}

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
