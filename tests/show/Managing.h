#pragma once

#include "desktop/Combination.h"
#include "show/Narrator.h"
#include "show/Studio.h"

#include <nlohmann/json.hpp>

namespace hollowfernpike::show {

/// Somebody who manages shortcuts in the windows of the utility, with keyboard and mouse, on a
/// private desktop with a panel.
class Managing {
public:
    /// `pictures` is the folder for screenshots.
    explicit Managing(std::filesystem::path pictures);

    /// Tells the whole of it; true if everything was as it ought to be. Throws std::runtime_error
    /// where it cannot go on.
    bool run();

private:
    void start();
    void useMenu();
    void add();
    void edit();
    void exportList();
    void remove();
    void importList();
    void end();

    /// Opens the management window from the menu.
    void openWindow();

    /// Strikes the combination while the management window is in front.
    void press(const test::Combination& combination, const std::string& keys);
    bool listBecomes(const nlohmann::json& expected);
    nlohmann::json list() const;

    Narrator narrator_;
    Studio studio_;
    Panel panel_;
    nlohmann::json added_;
};

} // namespace hollowfernpike::show
