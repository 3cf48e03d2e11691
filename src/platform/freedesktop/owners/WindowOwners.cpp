#include "platform/freedesktop/owners/WindowOwners.h"

#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/entries/Names.h"
#include "platform/freedesktop/owners/ApplicationUnit.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <tuple>

namespace hollowfernpike::freedesktop {

namespace {

using Entry = const DesktopEntry*;
using platform::WindowFacts;

// The file that tells what a process is: its executable, or the script that it interprets.
std::string programOf(const ProcessFacts& process) {
    return isInterpreter(fileName(process.executable)) ? identifyingProgram(process.commandLine)
                                                       : process.executable;
}

bool runsProgramOf(const DesktopEntry& entry, const ProcessFacts& process) {
    const auto program = programOf(process);
    return !program.empty() &&
           (entry.programFile == program || fileName(entry.programFile) == fileName(program) ||
            fileName(identifyingProgram(entry.words)) == fileName(program));
}

// How many words of the entry's command line the process was started with, less the missing ones up
// to the program: "env" does not pass its own words on. -1 if the process runs another program: the
// entry's may be a script that starts it. Absent if it runs the entry's program but lacks one of
// its arguments: then it is something else.
std::optional<int> sharedWords(const DesktopEntry& entry, const ProcessFacts& process) {
    if (!runsProgramOf(entry, process)) {
        return -1;
    }
    const auto program = std::ranges::find(entry.words, identifyingProgram(entry.words));
    int shared = 0;
    for (auto word = entry.words.begin() + 1; word < entry.words.end(); ++word) {
        if (word->find('%') != std::string::npos) {
            continue;
        }
        if (std::ranges::find(process.commandLine, *word) != process.commandLine.end()) {
            ++shared;
        } else if (word > program) {
            return std::nullopt;
        } else {
            --shared;
        }
    }
    return shared;
}

Entry best(const EntryIndex::Entries& candidates, std::string_view name,
           const ProcessFacts& process) {
    if (candidates.size() < 2) {
        return candidates.empty() ? nullptr : candidates.front();
    }
    const auto rank = [&](Entry entry) {
        return std::tuple(sharedWords(*entry, process), folded(entry->identifier) == folded(name),
                          !entry->noDisplay);
    };
    const auto* const first = *std::ranges::max_element(candidates, {}, rank);
    return sharedWords(*first, process) ? first : nullptr;
}

Entry byHints(const WindowFacts& window, const EntryIndex& index) {
    if (const auto* entry = index.withIdentifier(window.gtkApplicationId)) {
        return entry;
    }
    if (const auto* entry = index.withPath(window.desktopFile)) {
        return entry;
    }
    return index.withIdentifier(entryName(window.desktopFile));
}

using Lookup = EntryIndex::Entries (EntryIndex::*)(std::string_view) const;

// The first entry found: each lookup in turn, with all names before the next lookup.
Entry byNames(std::initializer_list<Lookup> lookups, std::initializer_list<std::string_view> names,
              const ProcessFacts& process, const EntryIndex& index) {
    for (const auto lookup : lookups) {
        for (const auto name : names) {
            if (const auto* entry = best((index.*lookup)(name), name, process)) {
                return entry;
            }
        }
    }
    return nullptr;
}

// The instance comes first: only it tells a web application's window from its browser's.
Entry byWindowClass(const WindowFacts& window, const ProcessFacts& process,
                    const EntryIndex& index) {
    return byNames({&EntryIndex::withWindowClass, &EntryIndex::withWindowClassAlike},
                   {window.instanceName, window.className}, process, index);
}

Entry byIdentifier(const WindowFacts& window, const ProcessFacts& process,
                   const EntryIndex& index) {
    return byNames({&EntryIndex::withIdentifierAlike, &EntryIndex::withLastLabelAlike},
                   {window.className, window.instanceName}, process, index);
}

Entry byWindow(const WindowFacts& window, const ProcessFacts& process, const EntryIndex& index) {
    if (const auto* entry = byHints(window, index)) {
        return entry;
    }
    if (const auto* entry = byWindowClass(window, process, index)) {
        return entry;
    }
    return byIdentifier(window, process, index);
}

std::string sandboxOf(const WindowFacts& window, const ProcessFacts& process) {
    if (!window.sandboxApplicationId.empty()) {
        return window.sandboxApplicationId;
    }
    return process.flatpakApplication.empty() ? snapApplication(process.controlGroup)
                                              : process.flatpakApplication;
}

// The applications of one sandbox share the first part of their ids.
bool comesFrom(const std::string& sandbox, const DesktopEntry& entry) {
    const bool isSnap = sandbox.find('.') == std::string::npos;
    const auto family = isSnap ? sandbox.substr(0, sandbox.find('_') + 1) : sandbox + '.';
    return !family.empty() && entry.identifier.starts_with(family);
}

Entry bySandbox(const WindowFacts& window, const ProcessFacts& process, const EntryIndex& index) {
    const auto sandbox = sandboxOf(window, process);
    if (sandbox.empty()) {
        return nullptr;
    }
    const auto* entry = byWindow(window, process, index);
    return entry != nullptr && comesFrom(sandbox, *entry) ? entry : index.withIdentifier(sandbox);
}

Entry byUnit(const ProcessFacts& process, const EntryIndex& index) {
    for (const auto& identifier : applicationsOfUnit(process.controlGroup)) {
        if (const auto* entry = index.withIdentifier(identifier)) {
            return entry;
        }
    }
    return nullptr;
}

Entry byProgram(const ProcessFacts& process, const EntryIndex& index) {
    const auto program = programOf(process);
    const auto name = fileName(program);
    if (const auto* entry = best(index.withProgram(program), name, process)) {
        return entry;
    }
    return best(index.withProgramName(name), name, process);
}

Entry byProcess(const ProcessFacts& process, const EntryIndex& index) {
    if (const auto* entry = byUnit(process, index)) {
        return entry;
    }
    if (const auto* entry = index.withPath(process.launchedEntry)) {
        return entry;
    }
    return byProgram(process, index);
}

} // namespace

platform::WindowOwner WindowOwners::ownerOf(const platform::WindowFacts& window) {
    const auto process = window.process ? processFacts(*window.process) : ProcessFacts{};
    return freedesktop::ownerOf(window, process, entries_.index());
}

const DesktopEntry* applicationOf(const WindowFacts& window, const ProcessFacts& process,
                                  const EntryIndex& index) {
    if (const auto* entry = bySandbox(window, process, index)) {
        return entry;
    }
    if (const auto* entry = byWindow(window, process, index)) {
        return entry;
    }
    return byProcess(process, index);
}

const DesktopEntry* applicationOf(const ProcessFacts& process, const EntryIndex& index) {
    return applicationOf(WindowFacts{}, process, index);
}

platform::WindowOwner ownerOf(const WindowFacts& window, const ProcessFacts& process,
                              const EntryIndex& index) {
    const auto* entry = applicationOf(window, process, index);
    return entry == nullptr ? platform::WindowOwner{window.className, {}}
                            : platform::WindowOwner{entry->name, entry->identifier};
}

} // namespace hollowfernpike::freedesktop
