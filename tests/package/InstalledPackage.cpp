#include "package/InstalledPackage.h"

#include "support/ChildProcess.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

constexpr auto longestRun = std::chrono::seconds{60};

void require(bool succeeded, const std::string& what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

void write(const fs::path& file, const std::string& text) {
    std::ofstream stream(file);
    stream << text << std::flush;
    require(stream.good(), file);
}

// A user who may not make a mount namespace may make one within a user namespace, where he is the
// administrator.
void enterMountNamespace() {
    const auto user = std::to_string(::geteuid());
    const auto group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWNS) != 0) {
        require(::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0, "no name space for the package");
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", "0 " + user + " 1");
        write("/proc/self/gid_map", "0 " + group + " 1");
    }
    require(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
}

// The package manager gets to know which packages this system has, but none of their files.
void copyRecords(const fs::path& records) {
    const fs::path ours = "/var/lib/dpkg";
    for (const auto* folder : {"info", "updates", "triggers"}) {
        fs::create_directories(records / folder);
    }
    fs::copy_file(ours / "status", records / "status");
    fs::copy_file(ours / "info/format", records / "info/format");
    for (const auto& file : fs::directory_iterator(ours / "info")) {
        if (file.path().extension() == ".list") {
            write(records / "info" / file.path().filename(), "");
        }
    }
}

} // namespace

InstalledPackage::InstalledPackage() {
    enterMountNamespace();
    copyRecords(root_ / "var/lib/dpkg");
    run({"--install", HFP_PACKAGE});
    const auto layers = "lowerdir=" + (root_ / "usr").string() + ":/usr";
    require(::mount("overlay", "/usr", "overlay", MS_RDONLY, layers.c_str()) == 0, layers);
}

std::vector<fs::path> InstalledPackage::files() const {
    std::vector<fs::path> files;
    if (fs::exists(root_ / "usr")) {
        for (const auto& file : fs::recursive_directory_iterator(root_ / "usr")) {
            files.push_back("/" / file.path().lexically_relative(root_));
        }
    }
    return files;
}

void InstalledPackage::purge() const {
    require(::umount2("/usr", MNT_DETACH) == 0, "/usr");
    run({"--purge", "hollowfernpike"});
}

void InstalledPackage::run(const std::vector<std::string>& arguments) const {
    std::vector<std::string> line{"dpkg", "--root=" + root_.string(), "--log=/dev/null"};
    line.insert(line.end(), arguments.begin(), arguments.end());
    ChildProcess packageManager(line);
    if (packageManager.wait(longestRun) != 0) {
        throw std::runtime_error("dpkg: " + packageManager.errors());
    }
}

} // namespace hollowfernpike::test
