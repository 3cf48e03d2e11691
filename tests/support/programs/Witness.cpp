// A program to be launched: it writes down how it finds itself, one "key<TAB>value" a line, in a
// file named after its process number, and then stays until it is killed.
//
//     hfp_witness DIRECTORY stay|leave|parent|hand-over [ANYTHING...]
//
// "leave" ends it after the report; "parent" starts another one, which stays, before it stays
// itself; "hand-over" does the same and ends.

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <spawn.h>
#include <unistd.h>

namespace {

void tellArguments(std::ostream& report, int count, char** arguments) {
    for (int index = 0; index < count; ++index) {
        report << "argument\t" << arguments[index] << '\n';
    }
    for (char** variable = environ; *variable != nullptr; ++variable) {
        report << "variable\t" << *variable << '\n';
    }
}

void tellDescriptors(std::ostream& report) {
    for (int number = 0; number < 256; ++number) {
        std::error_code error;
        const auto link = "/proc/self/fd/" + std::to_string(number);
        const auto target = std::filesystem::read_symlink(link, error);
        if (!error) {
            report << "descriptor\t" << number << ' ' << target.string() << '\n';
        }
    }
}

void tellSignals(std::ostream& report) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigBlk:") || line.starts_with("SigIgn:")) {
            report << line << '\n';
        }
    }
}

void startAnother(char* program, char* directory) {
    std::string stay = "stay";
    char* arguments[] = {program, directory, stay.data(), nullptr};
    pid_t number = 0;
    ::posix_spawn(&number, program, nullptr, nullptr, arguments, environ);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::cerr << "hfp_witness: DIRECTORY and what to do, please\n";
        return 2;
    }
    ::alarm(300);
    const std::filesystem::path directory = arguments[1];
    const auto number = std::to_string(::getpid());
    {
        std::ofstream report(directory / (number + ".new"));
        tellDescriptors(report);
        tellArguments(report, count, arguments);
        tellSignals(report);
        report << "directory\t" << std::filesystem::current_path().string() << '\n';
        report << "session\t" << ::getsid(0) << '\n';
    }
    std::filesystem::rename(directory / (number + ".new"), directory / number);
    if (std::strcmp(arguments[2], "leave") == 0) {
        return 0;
    }
    const bool handsOver = std::strcmp(arguments[2], "hand-over") == 0;
    if (handsOver || std::strcmp(arguments[2], "parent") == 0) {
        startAnother(arguments[0], arguments[1]);
    }
    if (handsOver) {
        return 0;
    }
    for (;;) {
        ::pause();
    }
}
