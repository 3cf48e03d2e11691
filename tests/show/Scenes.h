#pragma once

#include "show/Edition.h"

#include <filesystem>

/// The pictures of one edition, in groups: each group is a story of its own on a desktop of its
/// own. Throws std::runtime_error if a state does not come.
namespace hollowfernpike::show {

/// The symbol in a panel, its menu, and what is told after an export and an import from there.
void takeMenu(const Edition& edition, const std::filesystem::path& folder);

/// The management window and the questions on it.
void takeManagement(const Edition& edition, const std::filesystem::path& folder);

/// The management window and an editor with all that makes them crowded: a name that is too long,
/// an application that is gone and a combination that another program holds. By keys alone, so that
/// it works with every font.
void takeCrowded(const Edition& edition, const std::filesystem::path& folder);

/// Export and import from the management window.
void takeExchange(const Edition& edition, const std::filesystem::path& folder);

/// The editor, from the choice of an application to the finished shortcut.
void takeEditor(const Edition& edition, const std::filesystem::path& folder);

/// What is seen while the display keeps the keys from the utility.
void takePermission(const Edition& edition, const std::filesystem::path& folder);

} // namespace hollowfernpike::show
