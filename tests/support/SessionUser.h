#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Whether the compositor of a private session has a user of its own: an ordinary one where the
/// tests are root's, because compositors do not work for root.
bool hasSessionUser();

/// The command line by which this program runs as that user, in the same process.
std::vector<std::string> asSessionUser(std::vector<std::string> commandLine);

/// Makes the folder, and all that is in it by now, that user's.
void giveToSessionUser(const std::filesystem::path& folder);

/// Where that user finds a file or program of the tests: a copy in the folder, which is made at the
/// first call, or the file itself if the tests are that user's. A library that lies beside the
/// program and is named after it is copied, too.
std::filesystem::path lendToSessionUser(const std::filesystem::path& file,
                                        const std::filesystem::path& folder);

} // namespace hollowfernpike::test
