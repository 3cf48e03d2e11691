#pragma once

#include "support/PrivateDesktop.h"
#include "support/WriteFile.h"

#include <filesystem>
#include <string>

namespace hollowfernpike::test {

/// A session whose font people set by the toolkit's own settings (qt6ct), which running programs
/// follow.
inline const Environment withFontSettings{{"QT_QPA_PLATFORMTHEME", "qt6ct"}};

/// Sets that font, as the program for these settings writes it: into a new file.
inline void setFont(const PrivateDesktop& desktop, int points) {
    const auto size = std::to_string(points) + ",-1,5,400,0,0,0,0,0,0,0,0,0,0,1\"\n";
    const auto folder = desktop.home() / ".config/qt6ct";
    writeFile(folder / "qt6ct.conf.new",
              "[Appearance]\nstyle=Fusion\n\n[Fonts]\nfixed=\"DejaVu Sans Mono," + size +
                  "general=\"DejaVu Sans," + size);
    std::filesystem::rename(folder / "qt6ct.conf.new", folder / "qt6ct.conf");
}

} // namespace hollowfernpike::test
