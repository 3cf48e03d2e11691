#pragma once

#include "support/TemporaryDirectory.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// What a launched witness wrote down of itself: values by key, in order.
struct WitnessReport {
    pid_t process = 0;
    std::multimap<std::string, std::string> lines;

    std::vector<std::string> all(const std::string& key) const;
    std::string first(const std::string& key) const;

    /// What stands behind "NAME=" among the environment's variables; "(unset)" if it is not there.
    std::string variable(const std::string& name) const;
};

/// A home directory with applications of its own, which this process and what it starts take for
/// the real one. No session bus, nothing installed but what the test writes. Witnesses started from
/// here are killed with it.
class ApplicationsHome {
public:
    ApplicationsHome();
    ApplicationsHome(const ApplicationsHome&) = delete;
    ApplicationsHome& operator=(const ApplicationsHome&) = delete;
    ~ApplicationsHome();

    const std::filesystem::path& path() const { return directory_.path(); }
    std::filesystem::path applications() const { return path() / "data/applications"; }
    std::filesystem::path systemApplications() const { return path() / "system/applications"; }
    std::filesystem::path reports() const { return path() / "reports"; }

    /// Writes `text` to a file, with the directories that it needs, and returns its path.
    std::string write(const std::filesystem::path& file, const std::string& text) const;

    /// Writes an entry named `name` (".desktop" is added) to the user's applications: the usual
    /// keys, the command line, then more lines as they are.
    std::string addEntry(const std::string& name, const std::string& exec,
                         const std::string& more = {}) const;

    /// A copy of the witness program that is called after `name` and this home alone, so that its
    /// processes are told from others'.
    std::string program(const std::string& name = "witness") const;

    /// A command line for a witness, in Exec quoting.
    std::string witness(const std::string& manner, const std::string& more = {}) const;
    std::string witnessNamed(const std::string& name, const std::string& manner) const;

    std::vector<WitnessReport> witnesses() const;

    /// Waits for so many reports and returns them, by process number.
    std::vector<WitnessReport> awaitWitnesses(std::size_t count) const;

private:
    bool isOfThisHome(pid_t process) const;

    TemporaryDirectory directory_;
};

} // namespace hollowfernpike::test
