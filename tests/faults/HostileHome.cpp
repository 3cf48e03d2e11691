#include "faults/HostileHome.h"

#include "support/Files.h"
#include "support/Privileges.h"

#include <cstdint>
#include <stdexcept>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" )"
                            R"(xmlns:xlink="http://www.w3.org/1999/xlink" )";
constexpr std::uintmax_t terabyte = std::uintmax_t{1} << 40;

void provide(bool isDone, const fs::path& path) {
    if (!isDone) {
        throw std::runtime_error("cannot make " + path.string());
    }
}

void layPipe(const fs::path& path) {
    fs::create_directories(path.parent_path());
    fs::remove(path);
    provide(::mkfifo(path.c_str(), 0600) == 0, path);
}

/// Each group is drawn twice by the next.
std::string repetitions(int levels) {
    std::string text = drawing + R"(><g id="a0"><rect width="1" height="1"/></g>)";
    for (int level = 1; level <= levels; ++level) {
        const auto use = "<use xlink:href=\"#a" + std::to_string(level - 1) + "\"/>";
        text.append("<g id=\"a").append(std::to_string(level)).append("\">");
        text.append(use).append(use).append("</g>");
    }
    return text + "</svg>";
}

void layPackedBlanks(const fs::path& path, std::size_t megabytes) {
    auto* const file = ::gzopen(path.c_str(), "wb1");
    ::gzwrite(file, drawing.data(), static_cast<unsigned>(drawing.size()));
    const std::string block(std::size_t{1} << 20, ' ');
    for (std::size_t count = 0; count < megabytes; ++count) {
        ::gzwrite(file, block.data(), static_cast<unsigned>(block.size()));
    }
    ::gzwrite(file, "/>", 2);
    provide(::gzclose(file) == Z_OK, path);
}

} // namespace

HostileHome::HostileHome(fs::path home, fs::path applications)
    : home_(std::move(home)), applications_(std::move(applications)) {
    fs::create_directories(home_ / "icons");
    layPipe(icon("pipe.png"));
    layPackedBlanks(icon("packed.svgz"), 256);
    putFile(icon("large.svg"), drawing + "/>");
    fs::resize_file(icon("large.svg"), terabyte);
    layIcons();
    for (const char* name : {"pipe.png", "packed.svgz", "large.svg", "reference.svg", "bomb.svg",
                             "huge.xpm", "noise.png"}) {
        addEntry(icon(name));
    }
    layForeignEntry();
    layPipe(home_ / ".config/app.hollowfernpike.Hollowfernpike.conf");
}

void HostileHome::layIcons() const {
    putFile(icon("reference.svg"),
            drawing + "><image xlink:href=\"" + icon("pipe.png").string() + "\"/></svg>");
    putFile(icon("bomb.svg"), repetitions(30));
    putFile(icon("huge.xpm"),
            "/* XPM */\nstatic char *x[] = {\n\"30000 30000 1 1\",\n\"a c red\",\n");
    putFile(icon("noise.png"), "\x89PNG\r\n\x1a\n" + std::string(4000, '\x7f'));
}

void HostileHome::addEntry(const fs::path& icon) {
    entries_.push_back(applications_ / (icon.filename().string() + ".desktop"));
    const std::string backwards{'\xE2', '\x80', '\xAE'}; // U+202E
    putFile(entries_.back(), "[Desktop Entry]\nType=Application\nName=" + backwards + "gpj." +
                                 icon.filename().string() + "\nExec=true\nIcon=" + icon.string() +
                                 "\n");
}

void HostileHome::layForeignEntry() const {
    fs::create_directories(foreignEntry_.parent_path());
    putFile(foreignEntry_, "[Desktop Entry]\nType=Application\nName=Foreign\nExec=touch " +
                               (home_ / "started").string() + "\n");
    fs::permissions(foreignEntry_, fs::perms{0777});
    if (::geteuid() == 0) {
        provide(::chown(foreignEntry_.c_str(), ordinaryUser, ordinaryUser) == 0, foreignEntry_);
    }
}

bool HostileHome::isForeignEntryStarted() const {
    return fs::exists(home_ / "started");
}

void HostileHome::layMaze() const {
    constexpr int width = 12;
    const auto maze = applications_ / "maze";
    const auto folder = [&](int number) { return maze / std::to_string(number); };
    fs::remove_all(maze);
    for (int number = 0; number < width; ++number) {
        fs::create_directories(folder(number));
        for (int target = 0; target < width; ++target) {
            fs::create_directory_symlink(folder(target), folder(number) / std::to_string(target));
        }
    }
}

void HostileHome::changeEntries() const {
    for (int number = 0; number < 20; ++number) {
        const auto entry = applications_ / ("some" + std::to_string(number) + ".desktop");
        putFile(entry, number % 2 == 0 ? std::string(100'000, '[')
                                       : "[Desktop Entry]\nType=Application\nName=x\nExec=" +
                                             std::string(50'000, '"'));
        fs::remove(entry);
    }
}

} // namespace hollowfernpike::test
