#pragma once

#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A system on which the package has just been installed, beside all that is installed on this one.
/// The test's own process moves there, and takes along what it starts from then on; nobody else
/// sees it. Made before the process has a second thread. Needs no rights where people may have a
/// name space of their own.
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
