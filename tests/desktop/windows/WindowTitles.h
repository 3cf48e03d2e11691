#pragma once

#include <string_view>

namespace hollowfernpike::test {

/// What the utility calls its windows in one of its languages.
struct WindowTitles {
    std::string_view management;
    std::string_view adding;
    std::string_view editing;
    std::string_view applications;
    std::string_view alert;
    std::string_view exporting;
    std::string_view importing;
};

inline constexpr WindowTitles japaneseTitles{.management = "Hollowfernpike - ショートカット管理",
                                             .adding = "ショートカット追加",
                                             .editing = "ショートカット編集",
                                             .applications = "アプリを選択",
                                             .alert = "Hollowfernpike",
                                             .exporting = "ショートカットをエクスポート",
                                             .importing = "ショートカットをインポート"};

inline constexpr WindowTitles englishTitles{.management = "Hollowfernpike - Manage Shortcuts",
                                            .adding = "Add Shortcut",
                                            .editing = "Edit Shortcut",
                                            .applications = "Select an App",
                                            .alert = "Hollowfernpike",
                                            .exporting = "Export Shortcuts",
                                            .importing = "Import Shortcuts"};

} // namespace hollowfernpike::test
