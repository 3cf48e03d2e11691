#pragma once

#include "platform/Desktop.h"
#include "platform/UserDefaults.h"
#include "ui/window/BindingsPrompt.h"

#include <string>
#include <vector>

namespace hollowfernpike {

/// Where the user has to bind the shortcuts in the settings of the desktop, tells what to write
/// there: in a window, and on standard error. The window opens if there is a line that was neither
/// copied from it, in this run or an earlier one, nor shown in this run. Main thread only.
class BindingsReminder {
public:
    /// Both outlive this. `program` is the path of our program.
    BindingsReminder(platform::Desktop& desktop, platform::UserDefaults& userDefaults,
                     const std::string& program);

    /// To be called once the list of shortcuts is there, and when it or the language has changed.
    void update();

private:
    std::vector<platform::BoundCommand> commands() const;
    bool isNews(const std::string& line) const;
    void rememberCopied();

    platform::Desktop& desktop_;
    platform::UserDefaults& userDefaults_;
    std::string program_;
    std::vector<std::string> lines_; ///< shown last
    BindingsPrompt window_{[this] { rememberCopied(); }};
};

} // namespace hollowfernpike
