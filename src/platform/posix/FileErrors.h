#pragma once

#include "platform/FileManager.h"

#include <filesystem>

namespace hollowfernpike::posix {

/// What was tried with a file, for the description of its failure.
enum class FileOperation { read, write, remove, createDirectory };

/// The error of a failed operation: the path, and what the system says of `number` (an errno).
platform::FileError fileError(FileOperation operation, const std::filesystem::path& path,
                              int number);

/// The error for a pipe, a socket or a device where a regular file is needed.
platform::FileError notARegularFile(FileOperation operation, const std::filesystem::path& path);

/// The error for an existing directory that should be private to the user and is not.
platform::FileError notPrivate(const std::filesystem::path& directory);

} // namespace hollowfernpike::posix
