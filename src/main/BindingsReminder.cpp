#include "main/BindingsReminder.h"

#include "main/Messages.h"
#include "model/AppShortcut.h"
#include "model/CombinationText.h"
#include "model/ShortcutStore.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <QStandardPaths>

namespace hollowfernpike {

namespace {

constexpr std::string_view copiedKey = "CopiedBindings";
constexpr const char* programName = "hollowfernpike";

/// The short name if it leads to this program.
std::string callable(const std::string& program) {
    const auto found = QStandardPaths::findExecutable(programName).toStdString();
    std::error_code failure;
    return std::filesystem::equivalent(found, program, failure) ? programName : program;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text.append(line).append("\n");
    }
    return text;
}

} // namespace

BindingsReminder::BindingsReminder(platform::Desktop& desktop, platform::UserDefaults& userDefaults,
                                   const std::string& program)
    : desktop_(desktop), userDefaults_(userDefaults), program_(callable(program)) {}

void BindingsReminder::update() {
    const auto bindings = desktop_.manualBindings(commands());
    if (!bindings) {
        return;
    }
    const bool hasNews =
        std::ranges::any_of(bindings->lines, [this](const auto& line) { return isNews(line); });
    lines_ = bindings->lines;
    if (hasNews) {
        tell({bindings->reason.japanese() + '\n' + joined(lines_),
              bindings->reason.english() + '\n' + joined(lines_)});
    }
    if (hasNews || (window_.isOpen() && !lines_.empty())) {
        window_.show(*bindings);
    } else if (lines_.empty()) {
        window_.close();
    }
}

std::vector<platform::BoundCommand> BindingsReminder::commands() const {
    std::vector<platform::BoundCommand> commands;
    for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
        const platform::KeyCombination combination{shortcut.keyCode,
                                                   shortcut.modifierFlags & modifierMask};
        if (std::ranges::find(commands, combination, &platform::BoundCommand::combination) ==
            commands.end()) {
            commands.push_back(
                {.combination = combination,
                 .words = {program_, "--press", CombinationText::words(combination)}});
        }
    }
    return commands;
}

bool BindingsReminder::isNews(const std::string& line) const {
    const auto copied = '\n' + userDefaults_.stringForKey(copiedKey).value_or("");
    return std::ranges::find(lines_, line) == lines_.end() &&
           copied.find('\n' + line + '\n') == std::string::npos;
}

void BindingsReminder::rememberCopied() {
    userDefaults_.setString(joined(lines_), copiedKey);
}

} // namespace hollowfernpike
