#pragma once

#include "platform/FileManager.h"

#include <filesystem>

namespace hollowfernpike::freedesktop {

/// What was tried with a file, for the description of its failure.
enum class FileOperation { read, write, remove, createDirectory };

/// The error of a failed operation: the path, and what the system says of `number` (an errno).
platform::FileError fileError(FileOperation operation, const std::filesystem::path& path,
                              int number);

/// The error of asking a pipe, a socket or a device for what only files can do.
platform::FileError notARegularFile(FileOperation operation, const std::filesystem::path& path);

/// The error of a directory that is in the place of one of the user's own.
platform::FileError notPrivate(const std::filesystem::path& directory);

} // namespace hollowfernpike::freedesktop
