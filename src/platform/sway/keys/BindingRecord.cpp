#include "platform/sway/keys/BindingRecord.h"

#include "platform/FileManager.h"
#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/instance/PrivateDirectory.h"
#include "platform/posix/AtomicFile.h"

#include <fstream>

namespace hollowfernpike::sway {

namespace {

std::filesystem::path file() {
    return freedesktop::PrivateDirectory::forRuntime().path() / "hollowfernpike-sway-bindings";
}

} // namespace

std::set<std::string> BindingRecord::read() const {
    std::set<std::string> keys;
    try {
        std::ifstream lines(file());
        std::string line;
        if (std::getline(lines, line) && line == socket_) {
            while (std::getline(lines, line)) {
                keys.insert(line);
            }
        }
    } catch (const platform::FileError& error) {
        qCDebug(freedesktop::keysLog, "%s", error.what());
    }
    return keys;
}

void BindingRecord::write(const std::set<std::string>& keys) const {
    std::string text = socket_ + '\n';
    for (const auto& key : keys) {
        text += key + '\n';
    }
    try {
        posix::writeFileAtomically(file(), text);
    } catch (const platform::FileError& error) {
        qCDebug(freedesktop::keysLog, "%s", error.what());
    }
}

} // namespace hollowfernpike::sway
