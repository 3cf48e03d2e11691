#include "platform/kde/Permission.h"

#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/files/FileManager.h"
#include "platform/freedesktop/launching/LaunchError.h"
#include "platform/posix/AtomicFile.h"

#include <filesystem>

namespace hollowfernpike::kde {

namespace {

/// Not the name of the entry that is installed with the program: it would hide that one.
constexpr const char* entryFile =
    "applications/app.hollowfernpike.Hollowfernpike.Permission.desktop";

std::filesystem::path entryPath() {
    const auto directory = freedesktop::dataHome();
    if (!directory) {
        throw platform::LocalizedError("ホームフォルダが見つかりません",
                                       "There is no home directory");
    }
    return *directory / entryFile;
}

void writeEntry(const std::string& program) {
    const auto exec = freedesktop::execLineFor(program);
    if (!exec) {
        throw freedesktop::unsayableProgram(program);
    }
    const auto path = entryPath();
    freedesktop::FileManager().createDirectory(path.parent_path());
    posix::writeFileAtomically(path, "[Desktop Entry]\n"
                                     "Type=Application\n"
                                     "Name=Hollowfernpike\n"
                                     "Icon=app.hollowfernpike.Hollowfernpike\n"
                                     "NoDisplay=true\n"
                                     "X-KDE-Wayland-Interfaces=org_kde_plasma_window_management\n"
                                     "Exec=" +
                                         *exec + '\n');
}

} // namespace

platform::Distrust missingPermission(const std::string& program) {
    return {
        .reason =
            {"KWin がほかのプログラムのウインドウを見せるのは、それを求めるデスクトップエントリが"
             "あるプログラムだけです。" +
                 program +
                 " のエントリはインストールされていません。"
                 "パッケージをインストールするか、エントリを作成してください。",
             "KWin shows the windows of others only to programs with a desktop entry that asks for "
             "them, and none is installed for " +
                 program + ". Install the package, or have an entry written for you."},
        .remedy = platform::TrustRemedy{.japanese = "エントリを作成",
                                        .english = "Write Entry",
                                        .apply = [program] { writeEntry(program); }},
    };
}

} // namespace hollowfernpike::kde
