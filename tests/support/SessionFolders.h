#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>

namespace hollowfernpike::test {

/// A home directory, which may last for some sessions.
using Home = std::shared_ptr<TemporaryDirectory>;

/// The folders of a private session. Of what is installed on the machine it sees what programs
/// need, but no applications and nothing that starts by itself.
class SessionFolders {
public:
    explicit SessionFolders(Home home);

    const std::filesystem::path& home() const { return home_->path(); }
    std::filesystem::path dataHome() const { return home() / ".local/share"; }
    std::filesystem::path applications() const { return dataHome() / "applications"; }
    std::filesystem::path runtime() const { return home() / "run"; }

    /// Has the session see this file or folder below the machine's /usr/share, too.
    void showOfMachine(const std::filesystem::path& part) const;

    /// Makes them, and all that is in them by now, those of a session's user.
    void giveToSessionUser() const;

    /// The variables that name the folders, and those that keep libraries from services of the
    /// machine.
    Environment environment() const;

private:
    Home home_;
    TemporaryDirectory shared_; ///< what the session sees of the machine
};

} // namespace hollowfernpike::test
