#pragma once

#include <filesystem>
#include <string_view>

namespace hollowfernpike::posix {

/// Replaces the file's contents as `platform::FileManager::writeFileAtomically` says: writes a new
/// file beside the old one, brings it to the disk, gives it the old one's name and brings the
/// folder to the disk. Owner, group and mode are kept as far as the system lets us. Throws
/// `platform::FileError`, also if something other than a regular file is there.
///
/// Writers at the same time, in any thread or process, do not mix; the last one counts.
void writeFileAtomically(const std::filesystem::path& file, std::string_view data);

} // namespace hollowfernpike::posix
