#include "desktop/Application.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace hollowfernpike::test {

namespace {

/// One argument of an entry's Exec line: quoted, and escaped once more as every text of an entry.
std::string asWord(std::string_view argument) {
    std::string result = "\"";
    for (const char letter : argument) {
        if (letter == '%') {
            result += "%%";
        } else if (letter == '\\') {
            result += R"(\\\\)";
        } else if (std::string_view("\"`$").find(letter) != std::string_view::npos) {
            result += std::string{R"(\\)"} + letter;
        } else {
            result += letter;
        }
    }
    return result + '"';
}

/// A percent sign in the program's name would look like a field code in the Exec line.
std::string withoutPercent(std::string name) {
    std::erase(name, '%');
    return name;
}

std::optional<unsigned> number(const std::string& text) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{value}
                                                                    : std::nullopt;
}

std::string writeScript(const std::string& path, const std::string& script) {
    std::ofstream(path) << "#!/bin/sh\n" << script << '\n';
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

/// Empty for a process that is ending: it loses its program before it is gone.
std::filesystem::path programOf(pid_t process) {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", failure);
}

/// Whether it has lost its program but is no zombie yet, so that nobody can wait for it.
bool isEnding(pid_t process) {
    const auto state = processState(process);
    return programOf(process).empty() && !state.empty() && state != "Z";
}

std::size_t count(const std::vector<SeenKey>& keys, bool down, unsigned key) {
    return static_cast<std::size_t>(std::ranges::count_if(
        keys, [&](const SeenKey& seen) { return seen.down == down && seen.key == key; }));
}

} // namespace

Application::Application(ApplicationPlace place, std::string name, const ApplicationTraits& traits)
    : place_(std::move(place)), name_(std::move(name)),
      entry_(place_.applications / (name_ + ".desktop")),
      program_(place_.home / "programs" /
               withoutPercent(traits.program.empty() ? name_ : traits.program)),
      log_(place_.home / (name_ + ".log")) {
    const auto windowClass = traits.windowClass.empty() ? name_ : traits.windowClass;
    std::filesystem::create_directories(program_.parent_path());
    std::filesystem::copy_file(place_.windowProgram, program_,
                               std::filesystem::copy_options::skip_existing);
    arguments_ = {program_, "--log", log_, "--title", name_, "--class", name_ + ',' + windowClass};
    arguments_.insert(arguments_.end(), traits.options.begin(), traits.options.end());

    std::ofstream entry(entry_);
    entry << "[Desktop Entry]\nType=Application\nStartupNotify=true\nName=" << name_
          << "\nStartupWMClass=" << windowClass << "\nExec=";
    if (!traits.script.empty()) {
        entry << asWord(writeScript(program_.string() + ".sh", traits.script)) << ' ';
    }
    for (const auto& argument : arguments_) {
        entry << asWord(argument) << ' ';
    }
    entry << '\n';
}

Application::~Application() {
    for (const auto process : copies()) {
        ::kill(process, SIGKILL);
    }
}

ChildProcess& Application::start(const Environment& changes) {
    started_.push_back(place_.start(arguments_, changes));
    return *started_.back();
}

std::vector<std::string> Application::log() const {
    std::ifstream file(log_);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line) && !file.eof();) {
        lines.push_back(line);
    }
    return lines;
}

std::size_t Application::starts() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        log(), [](const std::string& line) { return line.starts_with("started "); }));
}

std::vector<pid_t> Application::copies() const {
    const auto lines = log();
    const auto hasTold = [&lines](const std::string& id) {
        return std::ranges::find(lines, "started " + id) != lines.end();
    };
    std::vector<pid_t> result;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        const auto process = static_cast<pid_t>(number(name).value_or(0));
        if (process != 0 &&
            (programOf(process) == program_ || (hasTold(name) && isEnding(process)))) {
            result.push_back(process);
        }
    }
    return result;
}

std::vector<WindowNumber> Application::windows() const {
    std::vector<WindowNumber> result;
    for (const auto& line : log()) {
        std::istringstream words(line);
        std::string kind;
        WindowNumber window = 0;
        if (words >> kind >> window && kind == "mapped") {
            result.push_back(window);
        }
    }
    return result;
}

std::vector<SeenKey> Application::keys() const {
    std::vector<SeenKey> result;
    for (const auto& line : log()) {
        std::istringstream words(line);
        std::string kind;
        SeenKey seen;
        if (words >> kind >> seen.key >> seen.state && (kind == "key-down" || kind == "key-up")) {
            seen.down = kind == "key-down";
            result.push_back(seen);
        }
    }
    return result;
}

std::size_t Application::downs(unsigned key) const {
    return count(keys(), true, key);
}

std::size_t Application::ups(unsigned key) const {
    return count(keys(), false, key);
}

std::string diaryOf(const std::vector<std::unique_ptr<Application>>& applications) {
    std::string text;
    for (const auto& application : applications) {
        text += application->name() + ":\n";
        for (const auto& line : application->log()) {
            text += "  " + line + '\n';
        }
    }
    return text;
}

} // namespace hollowfernpike::test
