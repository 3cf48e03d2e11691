#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::freedesktop {

/// The word of a command line that tells which application it runs: the program, or the script of
/// an interpreter. A leading "env" is skipped with its options and assignments. Empty if there is
/// no such word: for interpreters given their program on the command line ("-c"), and for programs
/// that only start others (such as "flatpak run").
std::string identifyingProgram(const std::vector<std::string>& words);

/// Whether a program of this name runs scripts that are applications of their own.
bool isInterpreter(std::string_view programName);

} // namespace hollowfernpike::freedesktop
