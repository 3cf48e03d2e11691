#include "show/Furniture.h"

#include "support/WriteFile.h"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace hollowfernpike::show {

namespace {

constexpr const char* frameThemeName = "Plain";

/// Texts are colours as red, green and blue, as the settings of the desktop write them.
struct Palette {
    const char* icons;
    const char* window;
    const char* view;
    const char* button;
    const char* text;
    const char* dimText;
    std::uint32_t frame;
    std::uint32_t frameBorder;
    std::uint32_t frameText;
    std::uint32_t frameDimText;
    std::uint32_t ground;
};

constexpr Palette light{.icons = "breeze",
                        .window = "239,240,241",
                        .view = "255,255,255",
                        .button = "252,252,252",
                        .text = "35,38,41",
                        .dimText = "112,125,138",
                        .frame = 0xDEE0E2,
                        .frameBorder = 0x9AA3AB,
                        .frameText = 0x232629,
                        .frameDimText = 0x8A939B,
                        .ground = 0x6F8FA8};

constexpr Palette dark{.icons = "breeze-dark",
                       .window = "42,46,50",
                       .view = "27,30,32",
                       .button = "49,54,59",
                       .text = "252,252,252",
                       .dimText = "161,169,177",
                       .frame = 0x31363B,
                       .frameBorder = 0x5A626A,
                       .frameText = 0xFCFCFC,
                       .frameDimText = 0x878E95,
                       .ground = 0x10202C};

const Palette& paletteOf(const Edition& edition) {
    return edition.isDark ? dark : light;
}

std::string colorGroup(const std::string& name, const char* background, const Palette& palette) {
    return "[Colors:" + name + "]\nBackgroundNormal=" + background +
           "\nBackgroundAlternate=" + background + "\nForegroundNormal=" + palette.text +
           "\nForegroundInactive=" + palette.dimText +
           "\nForegroundLink=61,174,233\nForegroundVisited=155,89,182\n\n";
}

/// The settings that the toolkit reads for colours, fonts and icons.
std::string desktopSettings(const Palette& palette, int points) {
    const auto size = std::to_string(points) + ",-1,5,50,0,0,0,0,0\n";
    return "[General]\nfont=DejaVu Sans," + size + "fixed=DejaVu Sans Mono," + size +
           "\n[Icons]\nTheme=" + std::string(palette.icons) +
           "\n\n[KDE]\nwidgetStyle=Fusion\nCursorBlinkRate=0\n\n" +
           colorGroup("Window", palette.window, palette) +
           colorGroup("View", palette.view, palette) +
           colorGroup("Button", palette.button, palette) +
           colorGroup("Tooltip", palette.window, palette) +
           "[Colors:Selection]\nBackgroundNormal=61,174,233\nForegroundNormal=252,252,252\n";
}

std::string hex(std::uint32_t color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%06x", color & 0xFFFFFFU);
    return text.data();
}

/// Flat frames in the colours of the palette; those of windows behind in the dimmer ones.
std::string frameTheme(const Palette& palette, int scale) {
    std::string theme = "padding.width: " + std::to_string(6 * scale) +
                        "\npadding.height: " + std::to_string(3 * scale) +
                        "\nborder.width: " + std::to_string(scale) +
                        "\nborder.color: " + hex(palette.frameBorder) +
                        "\nwindow.client.padding.width: 0\nwindow.client.padding.height: 0\n"
                        "window.handle.width: 0\nwindow.label.text.justify: center\n";
    for (const std::string state : {"active", "inactive"}) {
        const std::string text =
            hex(state == "active" ? palette.frameText : palette.frameDimText) + '\n';
        const auto add = [&](const char* what, const std::string& value) {
            theme.append("window.").append(state).append(what).append(value);
        };
        add(".title.bg: ", "flat solid\n");
        add(".title.bg.color: ", hex(palette.frame) + '\n');
        add(".label.bg: ", "parentrelative\n");
        add(".label.text.color: ", text);
    }
    return theme;
}

std::string frameSettings(int scale) {
    const auto font = [scale](const char* place) {
        return "<font place=\"" + std::string(place) +
               "\"><name>DejaVu Sans</name><weight>Bold</weight><size>" +
               std::to_string(9 * scale) + "</size></font>";
    };
    return "<?xml version=\"1.0\"?><openbox_config "
           "xmlns=\"http://openbox.org/3.4/rc\"><theme><name>" +
           std::string(frameThemeName) + "</name><titleLayout>L</titleLayout>" +
           font("ActiveWindow") + font("InactiveWindow") + "</theme></openbox_config>\n";
}

struct KnownApplication {
    const char* name;
    const char* japaneseName;
    const char* icon;
    const char* program = "true";
};

constexpr std::array knownApplications{
    KnownApplication{"Terminal", "端末", "utilities-terminal",
                     "xterm -fa \"DejaVu Sans Mono\" -fs 11 -geometry 70x16+40+340 -bg \"#1d2733\" "
                     "-fg \"#e6edf3\"\nStartupWMClass=XTerm"},
    KnownApplication{"Text Editor", "テキストエディター", "accessories-text-editor"},
    KnownApplication{"Browser", "ウェブブラウザー", "internet-web-browser"},
    KnownApplication{"Files", "ファイル", "system-file-manager"},
    KnownApplication{"Mail", "メール", "internet-mail"},
    KnownApplication{"Calendar", "カレンダー", "office-calendar"},
    KnownApplication{"Calculator", "電卓", "accessories-calculator"},
    KnownApplication{"Quarterly Reports of the Northern Branch Office",
                     "北支店の四半期報告書をまとめて表示するアプリケーション",
                     "x-office-spreadsheet"},
};

void installApplications(const test::PrivateDesktop& desktop) {
    for (const auto& [name, japaneseName, icon, program] : knownApplications) {
        test::writeFile(desktop.applications() / (std::string(name) + ".desktop"),
                        "[Desktop Entry]\nType=Application\nName=" + std::string(name) +
                            "\nName[ja]=" + japaneseName + "\nIcon=" + icon + "\nExec=" + program +
                            '\n');
    }
}

void paintGround(const test::PrivateDesktop& desktop, std::uint32_t color) {
    if (desktop.start({"xsetroot", "-solid", hex(color)})->wait() != 0) {
        throw std::runtime_error("the ground cannot be painted");
    }
}

} // namespace

std::uint32_t groundColor(const Edition& edition) {
    return paletteOf(edition).ground;
}

test::Environment furnish(const test::PrivateDesktop& desktop, const Edition& edition) {
    const auto& palette = paletteOf(edition);
    const auto configuration = desktop.home() / ".config";
    test::writeFile(configuration / "kdeglobals", desktopSettings(palette, edition.points));
    test::writeFile(configuration / "openbox/rc.xml", frameSettings(edition.scale));
    test::writeFile(desktop.home() / ".themes" / frameThemeName / "openbox-3/themerc",
                    frameTheme(palette, edition.scale));
    installApplications(desktop);
    paintGround(desktop, palette.ground);
    if (desktop.start({"openbox", "--reconfigure"})->wait() != 0) {
        throw std::runtime_error("the frames cannot be set");
    }
    return {{"XDG_CURRENT_DESKTOP", "KDE"},
            {"KDE_SESSION_VERSION", "5"},
            {"QT_SCALE_FACTOR", std::to_string(edition.scale)}};
}

void setLanguage(const test::PrivateDesktop& desktop, const Edition& edition) {
    test::writeFile(desktop.home() / ".config/app.hollowfernpike.Hollowfernpike.conf",
                    std::string("[General]\nAppLanguage=") + (edition.isEnglish ? "en" : "ja") +
                        '\n');
}

} // namespace hollowfernpike::show
