#pragma once

#include "desktop/Application.h"
#include "desktop/Combination.h"

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// What a shortcut of the list says beside its keys.
struct ShortcutTarget {
    std::string path;
    std::string name;
    std::string identifier;
};

/// The list of shortcuts that the utility will read.
class ShortcutList {
public:
    struct Entry {
        Combination combination;
        ShortcutTarget target;
    };

    void add(const Combination& combination, const ShortcutTarget& target);
    void add(const Combination& combination, const Application& application);
    void clear() { entries_.clear(); }

    const std::vector<Entry>& entries() const { return entries_; }

    /// The file in which the utility looks for it, in the user's folder for data.
    static std::filesystem::path fileIn(const std::filesystem::path& dataHome);

    void write(const std::filesystem::path& file) const;

private:
    std::vector<Entry> entries_;
};

} // namespace hollowfernpike::test
