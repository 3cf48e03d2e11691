#include "platform/freedesktop/launching/ProgramFile.h"

#include <climits>
#include <cstdlib>

#include "platform/freedesktop/entries/GlibPointers.h"

namespace hollowfernpike::freedesktop {

std::string findProgram(const std::string& program, const std::string& directory) {
    const bool isRelativePath = program.find('/') != std::string::npos && program.front() != '/';
    const auto wanted = isRelativePath && !directory.empty() ? directory + '/' + program : program;
    return orEmpty(TextPointer(g_find_program_in_path(wanted.c_str())).get());
}

std::string resolvedFile(const std::string& path) {
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) == nullptr ? std::string{} : std::string{resolved};
}

} // namespace hollowfernpike::freedesktop
