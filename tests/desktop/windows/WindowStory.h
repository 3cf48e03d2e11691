#pragma once

#include "desktop/Story.h"
#include "desktop/windows/WindowUser.h"

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

/// Somebody with keyboard and mouse at the windows of the utility, which has started in an empty
/// home.
class WindowStory : public Story, public WindowUser {
public:
    WindowStory();

    Application& front;

    /// Starts the utility on the files as they are.
    void start(const Environment& changes = {});

    using WindowUser::record;

    /// Adds a shortcut from the open window to the live combination.
    void add(const Application& application, const Combination& combination);

    /// The shortcuts of the file, in order; an empty list if there is no file.
    nlohmann::json list() const;

    /// Waits for the file to hold this list.
    testing::AssertionResult listBecomes(const nlohmann::json& expected);

    /// The record of this shortcut, with the identifier that the file has in this place.
    nlohmann::json record(std::size_t index, const Combination& combination,
                          const Application& application) const;

private:
};

nlohmann::json contents(const std::filesystem::path& file);

} // namespace hollowfernpike::test
