#pragma once

#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// This system with the package just installed on top. Only the test's own process, and what it
/// starts from then on, sees it. To be made before the process has a second thread. Needs no rights
/// where users may make namespaces.
class InstalledPackage {
public:
    InstalledPackage();

    /// What the package has brought below /usr.
    std::vector<std::filesystem::path> files() const;

    /// Takes the package away again, with all that its installation left.
    void purge() const;

private:
    void run(const std::vector<std::string>& arguments) const;

    TemporaryDirectory scratch_;
    std::filesystem::path root_ = scratch_.path() / "root";
};

} // namespace hollowfernpike::test
