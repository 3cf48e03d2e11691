#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::freedesktop {

struct DesktopEntry;

/// The words of an Exec line, unquoted by the rules of the Desktop Entry Specification, field codes
/// left as they are. Empty if the line is empty or its quoting is broken.
std::vector<std::string> wordsOf(const std::string& exec);

/// The argument vector that opens the application without any file: codes for files fall away, and
/// so does an argument that consists of nothing else; %i, %c, %k and %% are filled in. The first
/// word is the program as the entry names it. Empty if the entry has no usable command line.
std::vector<std::string> commandLineOf(const DesktopEntry& entry);

/// The Exec line that starts `program`, an absolute path, without arguments: quoted by the Desktop
/// Entry Specification, not yet escaped as a text of the file. Absent if no line can say that path:
/// it is not UTF-8, or has both "%" and "=" in it.
std::optional<std::string> execLineFor(const std::filesystem::path& program);

/// The word of a command line that tells which application it runs: the program, or the script of
/// an interpreter. A leading "env" is skipped with its options and assignments. Empty if there is
/// no such word: for interpreters given their program on the command line ("-c"), and for programs
/// that only start others (such as "flatpak run").
std::string identifyingProgram(const std::vector<std::string>& words);

/// Whether a program of this name runs scripts that are applications of their own.
bool isInterpreter(std::string_view programName);

/// The file that `program` would run: itself if it is an absolute path, looked up from `directory`
/// if it is a relative one, else in PATH. Empty if there is none or it is not executable.
std::string findProgram(const std::string& program, const std::string& directory = {});

/// The same file free of symbolic links; empty if it does not exist.
std::string resolvedFile(const std::string& path);

} // namespace hollowfernpike::freedesktop
