#include "platform/freedesktop/owners/RecordedDesktop.h"

#include "platform/freedesktop/entries/ExecLine.h"

#include <string>
#include <vector>

namespace hollowfernpike::test {

namespace {

struct RecordedEntry {
    const char* identifier;
    const char* exec;
    const char* windowClass;
    const char* programFile;
};

constexpr RecordedEntry recordedEntries[] = {
    {"debian-xterm", "xterm", "XTerm", "/usr/bin/xterm"},
    {"debian-uxterm", "uxterm", "UXTerm", "/usr/bin/uxterm"},
    {"firefox-esr", "/usr/lib/firefox-esr/firefox-esr %u", "firefox-esr",
     "/usr/lib/firefox-esr/firefox-esr"},
    {"chromium", "/usr/bin/chromium %U", "chromium", "/usr/bin/chromium"},
    {"chrome-agimnkijcaahngcdmfeangaknmldooml-Default",
     "/usr/bin/chromium --profile-directory=Default --app-id=agimnkijcaahngcdmfeangaknmldooml",
     "crx_agimnkijcaahngcdmfeangaknmldooml", "/usr/bin/chromium"},
    {"webapp-Mail7431", "chromium --class=WebApp-Mail7431 --app=https://mail.example",
     "WebApp-Mail7431", "/usr/bin/chromium"},
    {"org.gnome.Terminal", "gnome-terminal", "", "/usr/bin/gnome-terminal"},
    {"org.gnome.Nautilus", "nautilus --new-window %U", "", "/usr/bin/nautilus"},
    {"libreoffice-writer", "libreoffice --writer %U", "libreoffice-writer",
     "/usr/lib/libreoffice/program/soffice"},
    {"libreoffice-startcenter", "libreoffice %U", "libreoffice-startcenter",
     "/usr/lib/libreoffice/program/soffice"},
    {"gimp", "gimp-2.10 %U", "", "/usr/bin/gimp-2.10"},
    {"code", "/usr/share/code/code --unity-launch %F", "Code", "/usr/share/code/code"},
    {"code-url-handler", "/usr/share/code/code --open-url %U", "Code", "/usr/share/code/code"},
    {"jetbrains-idea-ce", "/opt/idea/bin/idea.sh %f", "jetbrains-idea-ce", "/opt/idea/bin/idea.sh"},
    {"org.xfce.mousepad", "mousepad %U", "", "/usr/bin/mousepad"},
    {"org.xfce.mousepad-settings", "mousepad --preferences", "", "/usr/bin/mousepad"},
    {"org.kde.dolphin", "dolphin %u", "", "/usr/bin/dolphin"},
    {"com.spotify.Client", "/usr/bin/flatpak run --command=spotify com.spotify.Client @@u %U @@",
     "spotify", ""},
    {"org.libreoffice.LibreOffice", "/usr/bin/flatpak run org.libreoffice.LibreOffice", "", ""},
    {"org.libreoffice.LibreOffice.calc",
     "/usr/bin/flatpak run --command=libreoffice org.libreoffice.LibreOffice --calc",
     "libreoffice-calc-flatpak", ""},
    {"firefox_firefox", "/snap/bin/firefox %u", "firefox", "/usr/bin/snap"},
    {"notes-desktop", "/opt/Notes/notes --no-sandbox %U", "Notes", "/opt/Notes/notes"},
    {"tasks", "electron25 /usr/share/tasks/app.asar", "Tasks", "/usr/share/tasks/app.asar"},
    {"ledger", "java -jar /opt/ledger/ledger.jar", "", "/opt/ledger/ledger.jar"},
    {"terminator", "terminator", "", "/usr/bin/terminator"},
    {"viewer", "viewer %f", "", "/usr/bin/viewer"},
    {"viewer-slides", "viewer --slides %f", "", "/usr/bin/viewer"},
    {"google-chrome", "/usr/bin/google-chrome-stable %U", "Google-chrome",
     "/opt/google/chrome/google-chrome"},
    {"chrome-fmgjjmmmlfnkbppncabfkddbjimcfncm-Default",
     "/opt/google/chrome/google-chrome --profile-directory=Default "
     "--app-id=fmgjjmmmlfnkbppncabfkddbjimcfncm",
     "crx_fmgjjmmmlfnkbppncabfkddbjimcfncm", "/opt/google/chrome/google-chrome"},
    {"notebook-work", "/opt/notebook/notebook.py --profile work", "", "/opt/notebook/notebook.py"},
    {"notebook-home", "python3 /opt/notebook/notebook.py --profile home %f", "",
     "/opt/notebook/notebook.py"},
    {"notebook-lent", "env LANG=C /opt/notebook/notebook.py --profile lent", "",
     "/opt/notebook/notebook.py"},
    {"board-left", "board --left", "Board", "/usr/bin/board"},
    {"board-right", "board --right", "Board", "/usr/bin/board"},
    {"plain-env", "env GDK_BACKEND=x11 sketch", "", "/usr/bin/sketch"},
    {"plain-loud", "env GDK_BACKEND=x11 sketch --loud", "", "/usr/bin/sketch"},
    {"shared-admin", "shared --admin", "Shared", "/usr/bin/shared"},
    {"shared", "shared", "Shared", "/usr/bin/shared"},
};

} // namespace

freedesktop::EntryIndex recordedDesktop() {
    std::vector<freedesktop::DesktopEntry> entries;
    for (const auto& recorded : recordedEntries) {
        freedesktop::DesktopEntry entry;
        entry.identifier = recorded.identifier;
        entry.name = recorded.identifier;
        entry.path = "/usr/share/applications/" + entry.name + ".desktop";
        entry.words = freedesktop::wordsOf(recorded.exec);
        entry.windowClass = recorded.windowClass;
        entry.programFile = recorded.programFile;
        entries.push_back(std::move(entry));
    }
    return freedesktop::EntryIndex(std::move(entries));
}

} // namespace hollowfernpike::test
