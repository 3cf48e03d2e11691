#include "platform/gnome/Permission.h"

#include "platform/freedesktop/files/BaseDirectories.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QVariantMap>

#include <algorithm>
#include <array>
#include <string>

namespace hollowfernpike::gnome {

namespace {

constexpr std::array extensions{"hollowfernpike@app.hollowfernpike",
                                "hollowfernpike-43@app.hollowfernpike"};

/// What the shell says of an extension ("state" of GetExtensionInfo).
enum class State : unsigned char {
    unknown = 0, ///< installed since the shell started, or not at all
    enabled = 1,
    disabled = 2,
    failed = 3,
    outOfDate = 4, ///< not for this release of the shell
};

struct Extension {
    const char* identifier = nullptr;
    State state = State::unknown;
    QString error;
};

QDBusMessage callOf(const char* interface, const char* method, const QVariantList& arguments) {
    auto message =
        QDBusMessage::createMethodCall("org.gnome.Shell", "/org/gnome/Shell", interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

constexpr const char* extensionsInterface = "org.gnome.Shell.Extensions";

State stateOf(int number) {
    constexpr int activating = 8;
    if (number == activating) {
        return State::enabled;
    }
    return number > static_cast<int>(State::outOfDate) ? State::disabled
                                                       : static_cast<State>(number);
}

Extension extensionOf(const freedesktop::SessionBus& bus, const char* identifier) {
    const auto info = qdbus_cast<QVariantMap>(
        bus.ask(callOf(extensionsInterface, "GetExtensionInfo", {QString(identifier)})));
    return {.identifier = identifier,
            .state = stateOf(info.value("state").toInt()),
            .error = info.value("error").toString()};
}

/// The one that is for this shell, as far as the shell knows it.
Extension fittingExtension(const freedesktop::SessionBus& bus) {
    Extension best;
    for (const auto* const identifier : extensions) {
        const auto found = extensionOf(bus, identifier);
        const bool isBetter = found.state != State::unknown && found.state != State::outOfDate;
        if (best.identifier == nullptr || isBetter || best.state == State::unknown) {
            best = found;
        }
    }
    return best;
}

bool areExtensionsOn(const freedesktop::SessionBus& bus) {
    const auto answer =
        bus.ask(callOf("org.freedesktop.DBus.Properties", "Get",
                       {QString(extensionsInterface), QStringLiteral("UserExtensionsEnabled")}));
    return !answer.isValid() || answer.value<QDBusVariant>().variant().toBool();
}

void enable(const freedesktop::SessionBus& bus, const char* identifier) {
    const auto answer =
        bus.ask(callOf(extensionsInterface, "EnableExtension", {QString(identifier)}));
    if (!answer.toBool()) {
        throw platform::LocalizedError("GNOME Shell が拡張機能を有効にできませんでした",
                                       "GNOME Shell could not enable the extension");
    }
}

} // namespace

bool isExtensionInstalled() {
    return std::ranges::any_of(extensions, [](const std::string& identifier) {
        return freedesktop::hasDataFile("gnome-shell/extensions/" + identifier + "/metadata.json");
    });
}

MissingExtension missingExtension(const freedesktop::SessionBus& bus) {
    if (!areExtensionsOn(bus)) {
        return {{{"GNOME Shell の拡張機能がすべてオフになっています。"
                  "「拡張機能」アプリを開き、一番上のスイッチをオンにしてください。",
                  "All extensions of GNOME Shell are switched off. "
                  "Open the application Extensions and turn on the switch at its top."}}};
    }
    const auto extension = fittingExtension(bus);
    switch (extension.state) {
    case State::unknown:
        return {{{"GNOME Shell は Hollowfernpike の拡張機能をまだ認識していません。"
                  "一度ログアウトして、もう一度ログインしてください。",
                  "GNOME Shell does not know the extension of Hollowfernpike yet. "
                  "Log out and in again."}},
                false};
    case State::outOfDate:
        return {{{"Hollowfernpike の拡張機能は、このバージョンの GNOME Shell に対応していません。"
                  "新しいバージョンの Hollowfernpike をインストールしてください。",
                  "The extension of Hollowfernpike is not made for this release of GNOME Shell. "
                  "Install a newer release of Hollowfernpike."}},
                false};
    case State::failed: {
        const auto error = extension.error.toStdString();
        return {{{"Hollowfernpike の拡張機能で問題が起きました: " + error,
                  "The extension of Hollowfernpike has failed: " + error}},
                false};
    }
    case State::enabled:
        return {
            {{"Hollowfernpike の拡張機能から応答がありません。"
              "しばらくしても変わらなければ、一度ログアウトして、もう一度ログインしてください。",
              "The extension of Hollowfernpike does not answer. "
              "If that stays so, log out and in again."}}};
    case State::disabled:
        break;
    }
    return {
        {.reason = {"キーの検出とウインドウの切り替えには、GNOME Shell の拡張機能が必要ですが、"
                    "現在オフになっています。この拡張機能は Hollowfernpike だけに応答します。",
                    "To see keys and switch windows, Hollowfernpike needs its extension of GNOME "
                    "Shell, which is switched off. It answers no other program."},
         .remedy = platform::TrustRemedy{
             .japanese = "拡張機能を有効にする",
             .english = "Enable Extension",
             .apply = [&bus, identifier = extension.identifier] { enable(bus, identifier); }}}};
}

} // namespace hollowfernpike::gnome
