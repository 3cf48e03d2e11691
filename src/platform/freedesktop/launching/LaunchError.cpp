#include "platform/freedesktop/launching/LaunchError.h"

#include "platform/freedesktop/entries/GlibPointers.h"

#include <iterator>

namespace hollowfernpike::freedesktop {

namespace {

std::string shown(const std::string& path) {
    return TextPointer(g_utf8_make_valid(path.data(), std::ssize(path))).get();
}

} // namespace

platform::LocalizedError noSuchApplication(const std::string& path) {
    return {"アプリケーションが見つかりません: " + shown(path),
            "There is no application at “" + shown(path) + "”."};
}

platform::LocalizedError unreadableEntry(const std::string& path, const std::string& reason) {
    return {"アプリケーションを読み込めません: " + shown(path) + " (" + reason + ")",
            "The application at “" + shown(path) + "” cannot be read: " + reason};
}

platform::LocalizedError notAnApplication(const std::string& path) {
    return {"アプリケーションではありません: " + shown(path),
            "The file at “" + shown(path) + "” does not describe an application."};
}

platform::LocalizedError hiddenApplication(const std::string& path) {
    return {"アプリケーションは取り除かれています: " + shown(path),
            "The application at “" + shown(path) + "” has been removed (Hidden=true)."};
}

platform::LocalizedError missingProgram(const std::string& path, const std::string& program) {
    return {"プログラムが見つかりません: " + shown(program) + " (" + shown(path) + ")",
            "The program “" + shown(program) + "” of “" + shown(path) + "” is missing."};
}

platform::LocalizedError untrustedEntry(const std::string& path) {
    return {
        "アプリケーションフォルダの外にあり、信頼されていません: " + shown(path),
        "The application at “" + shown(path) +
            "” is not trusted: outside of the applications folders it must belong to the user or "
            "to root, be writable by nobody else and be executable."};
}

platform::LocalizedError noAnswer(const std::string& path) {
    return {"アプリケーションから応答がありません: " + shown(path),
            "The application at “" + shown(path) + "” does not answer."};
}

platform::LocalizedError failedStart(const std::string& path, const std::string& reason) {
    return {"アプリケーションを起動できません: " + shown(path) + " (" + reason + ")",
            "The application at “" + shown(path) + "” cannot be started: " + reason};
}

platform::LocalizedError unsayableProgram(const std::string& program) {
    return {"プログラムのパスを自動起動の設定に書き込めません: " + shown(program),
            "The path “" + shown(program) + "” cannot be written to an autostart entry."};
}

} // namespace hollowfernpike::freedesktop
