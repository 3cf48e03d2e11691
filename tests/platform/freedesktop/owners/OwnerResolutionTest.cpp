#include "platform/freedesktop/owners/WindowOwners.h"

#include "platform/freedesktop/owners/RecordedDesktop.h"

#include <algorithm>
#include <cctype>

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using platform::WindowFacts;

struct RecordedWindow {
    const char* name;
    WindowFacts window;
    ProcessFacts process;
    const char* identifier;
    const char* owner = identifier; ///< the entry's name, else the class
};

std::ostream& operator<<(std::ostream& output, const RecordedWindow& recorded) {
    return output << recorded.name;
}

ProcessFacts running(const std::string& executable, std::vector<std::string> arguments = {}) {
    ProcessFacts facts;
    facts.executable = executable;
    facts.commandLine = {executable};
    facts.commandLine.insert(facts.commandLine.end(), arguments.begin(), arguments.end());
    return facts;
}

ProcessFacts inGroup(ProcessFacts facts, const std::string& controlGroup) {
    facts.controlGroup = controlGroup;
    return facts;
}

ProcessFacts inFlatpak(ProcessFacts facts, const std::string& application) {
    facts.flatpakApplication = application;
    return facts;
}

ProcessFacts launchedBy(ProcessFacts facts, const std::string& entry) {
    facts.launchedEntry = entry;
    return facts;
}

WindowFacts classed(const std::string& instanceName, const std::string& className) {
    WindowFacts facts;
    facts.instanceName = instanceName;
    facts.className = className;
    return facts;
}

WindowFacts gtk(WindowFacts facts, const std::string& application) {
    facts.gtkApplicationId = application;
    return facts;
}

WindowFacts hinted(WindowFacts facts, const std::string& desktopFile) {
    facts.desktopFile = desktopFile;
    return facts;
}

constexpr auto appSlice = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

std::string unit(const std::string& name) {
    return appSlice + name;
}

const std::vector<RecordedWindow> recordedWindows{
    {"xterm", classed("xterm", "XTerm"), running("/usr/bin/xterm"), "debian-xterm"},
    {"uxterm", classed("uxterm", "UXTerm"), running("/usr/bin/xterm", {"-class", "UXTerm"}),
     "debian-uxterm"},
    {"Firefox ESR", classed("Navigator", "firefox-esr"),
     running("/usr/lib/firefox-esr/firefox-esr"), "firefox-esr"},
    {"Firefox ESR, library window", classed("Places", "firefox-esr"),
     running("/usr/lib/firefox-esr/firefox-esr"), "firefox-esr"},
    {"Chromium", classed("chromium", "Chromium"), running("/usr/lib/chromium/chromium"),
     "chromium"},
    {"web application in Chromium", classed("crx_agimnkijcaahngcdmfeangaknmldooml", "Chromium"),
     running("/usr/lib/chromium/chromium", {"--app-id=agimnkijcaahngcdmfeangaknmldooml"}),
     "chrome-agimnkijcaahngcdmfeangaknmldooml-Default"},
    {"web application with a class of its own", classed("webapp-mail7431", "WebApp-Mail7431"),
     running("/usr/lib/chromium/chromium", {"--class=WebApp-Mail7431"}), "webapp-Mail7431"},
    {"GNOME Terminal, whose windows belong to a server",
     gtk(classed("gnome-terminal-server", "Gnome-terminal"), "org.gnome.Terminal"),
     inGroup(running("/usr/libexec/gnome-terminal-server"),
             unit("app-org.gnome.Terminal.slice/gnome-terminal-server.service")),
     "org.gnome.Terminal"},
    {"Nautilus", gtk(classed("org.gnome.Nautilus", "Org.gnome.Nautilus"), "org.gnome.Nautilus"),
     running("/usr/bin/nautilus", {"--gapplication-service"}), "org.gnome.Nautilus"},
    {"LibreOffice Writer", classed("libreoffice", "libreoffice-writer"),
     running("/usr/lib/libreoffice/program/soffice.bin", {"--writer"}), "libreoffice-writer"},
    {"LibreOffice start centre", classed("libreoffice", "libreoffice-startcenter"),
     running("/usr/lib/libreoffice/program/soffice.bin"), "libreoffice-startcenter"},
    {"GIMP, whose class carries a version", classed("gimp-2.10", "Gimp-2.10"),
     running("/usr/bin/gimp-2.10"), "gimp"},
    {"Visual Studio Code", classed("code", "Code"), running("/usr/share/code/code"), "code"},
    {"IntelliJ IDEA", classed("jetbrains-idea-ce", "jetbrains-idea-ce"),
     running("/opt/idea/jbr/bin/java", {"-classpath", "/opt/idea/lib/app.jar"}),
     "jetbrains-idea-ce"},
    {"Mousepad", classed("mousepad", "Mousepad"), running("/usr/bin/mousepad"),
     "org.xfce.mousepad"},
    {"Dolphin, with a word of its entry", hinted(classed("dolphin", "dolphin"), "org.kde.dolphin"),
     running("/usr/bin/dolphin"), "org.kde.dolphin"},
    {"a window with the path of its entry",
     hinted(classed("x", "X"), "/usr/share/applications/org.kde.dolphin.desktop"),
     running("/usr/bin/other"), "org.kde.dolphin"},
    {"Flatpak application", classed("spotify", "Spotify"),
     inFlatpak(running("/app/bin/spotify"), "com.spotify.Client"), "com.spotify.Client"},
    {"one of several applications of a Flatpak", classed("libreoffice", "libreoffice-calc-flatpak"),
     inFlatpak(running("/app/libreoffice/soffice.bin"), "org.libreoffice.LibreOffice"),
     "org.libreoffice.LibreOffice.calc"},
    {"Flatpak application that poses as another one", classed("Navigator", "firefox-esr"),
     inFlatpak(running("/app/bin/evil"), "com.spotify.Client"), "com.spotify.Client"},
    {"sandbox known to the display server",
     [] {
         auto facts = classed("Navigator", "firefox-esr");
         facts.sandboxApplicationId = "com.spotify.Client";
         return facts;
     }(),
     {},
     "com.spotify.Client"},
    {"snap", classed("Navigator", "firefox"),
     inGroup(running("/snap/firefox/4173/usr/lib/firefox/firefox"),
             unit("snap.firefox.firefox-0d1f2a3b-1111-2222-3333-444455556666.scope")),
     "firefox_firefox"},
    {"Electron application that kept Electron's class", classed("electron", "Electron"),
     running("/opt/Notes/notes"), "notes-desktop"},
    {"Electron application run by the system's Electron", classed("electron", "Electron"),
     running("/usr/lib/electron25/electron", {"/usr/share/tasks/app.asar"}), "tasks"},
    {"Java application", classed("sun-awt-X11-XFramePeer", "com-example-Ledger"),
     running("/usr/lib/jvm/java-17-openjdk-amd64/bin/java", {"-jar", "/opt/ledger/ledger.jar"}),
     "ledger"},
    {"another Java application", classed("sun-awt-X11-XFramePeer", "com-example-Other"),
     running("/usr/lib/jvm/java-17-openjdk-amd64/bin/java", {"-jar", "/opt/other.jar"}), "",
     "com-example-Other"},
    {"Python application", classed("terminator", "X-thing"),
     running("/usr/bin/python3.11", {"/usr/bin/terminator"}), "terminator"},
    {"Python application without a useful class", classed("main.py", "Main.py"),
     running("/usr/bin/python3.11", {"/usr/bin/terminator"}), "terminator"},
    {"Python application that belongs to nobody", classed("main.py", "Main.py"),
     running("/usr/bin/python3.11", {"/home/me/main.py"}), "", "Main.py"},
    {"two entries with one program, the plain one", classed("viewer-app", "Viewer-app"),
     running("/usr/bin/viewer"), "viewer"},
    {"two entries with one program, the one with an argument", classed("viewer-app", "Viewer-app"),
     running("/usr/bin/viewer", {"--slides", "a.pdf"}), "viewer-slides"},
    {"two entries with one class, told by their arguments", classed("shared", "Shared"),
     running("/usr/bin/shared", {"--admin"}), "shared-admin"},
    {"two entries with one class, told by the id", classed("shared", "Shared"),
     running("/usr/libexec/shared-server"), "shared"},
    {"web application in a Chrome whose class is an entry's, too",
     classed("crx_fmgjjmmmlfnkbppncabfkddbjimcfncm", "Google-chrome"),
     running("/opt/google/chrome/chrome", {"--app-id=fmgjjmmmlfnkbppncabfkddbjimcfncm"}),
     "chrome-fmgjjmmmlfnkbppncabfkddbjimcfncm-Default"},
    {"several entries with one script, told by their arguments", classed("notebook", "Notebook"),
     running("/usr/bin/python3.11", {"/opt/notebook/notebook.py", "--profile", "home", "a.txt"}),
     "notebook-home"},
    {"several entries with one script, the one behind env", classed("notebook", "Notebook"),
     running("/usr/bin/python3.11", {"/opt/notebook/notebook.py", "--profile", "lent"}),
     "notebook-lent"},
    {"a stranger with the script of several entries", classed("notebook", "Notebook"),
     running("/usr/bin/python3.11", {"/opt/notebook/notebook.py", "--profile", "mine"}), "",
     "Notebook"},
    {"a stranger with the class and the program of several entries", classed("board", "Board"),
     running("/usr/bin/board", {"--top"}), "", "Board"},
    {"behind the script of several entries, another program", classed("board", "Board"),
     running("/usr/libexec/board-server", {"--top"}), "board-left"},
    {"env keeps its words to itself", classed("s", "S"), running("/usr/bin/sketch"), "plain-env"},
    {"an application unit", classed("a", "Unhelpful"),
     inGroup(running("/usr/libexec/helper"), unit("app-gnome-firefox\\x2desr-4711.scope")),
     "firefox-esr"},
    {"an application unit without a launcher's name", classed("a", "Unhelpful"),
     inGroup(running("/usr/libexec/helper"), unit("app-org.kde.dolphin-6a7b.scope")),
     "org.kde.dolphin"},
    {"an autostarted application unit", classed("a", "Unhelpful"),
     inGroup(running("/usr/libexec/helper"), unit("app-org.kde.dolphin@autostart.service")),
     "org.kde.dolphin"},
    {"the launch environment", classed("a", "Unhelpful"),
     launchedBy(running("/opt/odd"), "/usr/share/applications/code.desktop"), "code"},
    {"the launch environment with an entry that is not installed", classed("a", "Unhelpful"),
     launchedBy(running("/opt/odd"), "/tmp/code.desktop"), "", "Unhelpful"},
    {"the unit before the launch environment", classed("a", "Unhelpful"),
     launchedBy(inGroup(running("/opt/odd"), unit("app-org.kde.dolphin-1.scope")),
                "/usr/share/applications/code.desktop"),
     "org.kde.dolphin"},
    {"started from a terminal: the class before the terminal's unit", classed("code", "Code"),
     inGroup(running("/usr/share/code/code"), unit("app-gnome-debian\\x2dxterm-99.scope")), "code"},
    {"the window's word before its class", gtk(classed("code", "Code"), "org.gnome.Nautilus"),
     running("/usr/share/code/code"), "org.gnome.Nautilus"},
    {"class in another case", classed("JETBRAINS-IDEA-CE", "x"), running("/x"),
     "jetbrains-idea-ce"},
    {"no process known", classed("xterm", "XTerm"), {}, "debian-xterm"},
    {"nobody's window", classed("thing", "Thing"), running("/home/me/thing"), "", "Thing"},
    {"a window without anything", {}, {}, "", ""},
};

class RecordedWindows : public ::testing::TestWithParam<RecordedWindow> {};

TEST_P(RecordedWindows, BelongToTheirApplication) {
    const auto& recorded = GetParam();
    const auto index = test::recordedDesktop();
    const auto owner = ownerOf(recorded.window, recorded.process, index);
    EXPECT_EQ(owner.bundleIdentifier, recorded.identifier);
    EXPECT_EQ(owner.name, recorded.owner);
}

std::string plainName(const ::testing::TestParamInfo<RecordedWindow>& recorded) {
    std::string name = recorded.param.name;
    std::ranges::replace_if(
        name, [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(OwnerResolution, RecordedWindows, ::testing::ValuesIn(recordedWindows),
                         plainName);

std::string applicationOfProcess(const ProcessFacts& process) {
    const auto index = test::recordedDesktop();
    const auto* entry = applicationOf(process, index);
    return entry == nullptr ? std::string{} : entry->identifier;
}

TEST(OwnerResolution, AProcessWithoutWindowsIsToldByItsProgram) {
    EXPECT_EQ(applicationOfProcess(running("/usr/bin/mousepad")), "org.xfce.mousepad");
    EXPECT_EQ(applicationOfProcess(running("/usr/lib/chromium/chromium")), "chromium");
    EXPECT_EQ(applicationOfProcess(running("/usr/bin/python3.11", {"-u", "/usr/bin/terminator"})),
              "terminator");
    EXPECT_EQ(applicationOfProcess(running("/usr/bin/bash")), "");
    EXPECT_EQ(applicationOfProcess(running("/usr/bin/flatpak", {"run", "com.spotify.Client"})), "");
    EXPECT_EQ(applicationOfProcess({}), "");
}

TEST(OwnerResolution, HostileWindowsBelongToNobody) {
    const auto index = test::recordedDesktop();
    const std::string endless(1 << 20, 'a');
    for (const std::string& text :
         {endless, std::string("\xFF\xFE\xC3"), std::string("../../../etc/passwd"),
          std::string("/"), std::string("//"), std::string(".."), std::string("."),
          std::string("a\0b", 3), std::string("%f"), std::string(".desktop"), std::string(" "),
          std::string("-"), std::string("@")}) {
        WindowFacts window{.process = -1,
                           .instanceName = text,
                           .className = text,
                           .gtkApplicationId = text,
                           .desktopFile = text,
                           .sandboxApplicationId = text};
        ProcessFacts process{.flatpakApplication = text,
                             .controlGroup = text,
                             .launchedEntry = text,
                             .display = text,
                             .waylandSocket = text,
                             .executable = text,
                             .commandLine = {text, text}};
        const auto owner = ownerOf(window, process, index);
        EXPECT_EQ(owner.bundleIdentifier, "") << text.substr(0, 40);
        EXPECT_EQ(owner.name, text);
    }
}

TEST(OwnerResolution, WithoutEntriesTheClassIsTheOwnersName) {
    const EntryIndex nothing;
    const auto owner = ownerOf(classed("xterm", "XTerm"), {}, nothing);
    EXPECT_EQ(owner.name, "XTerm");
    EXPECT_EQ(owner.bundleIdentifier, "");
}

} // namespace

} // namespace hollowfernpike::freedesktop
