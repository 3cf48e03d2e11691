// The input is a window that may lie about itself, on a desktop whose entry files may be anything:
// the window's facts, then the entry files, with lines of "%%" between them.

#include "platform/freedesktop/owners/WindowOwners.h"
#include "fuzz/EntryText.h"
#include "fuzz/Require.h"
#include "fuzz/Target.h"
#include "fuzz/WindowText.h"
#include "platform/freedesktop/entries/EntryIndex.h"
#include "platform/freedesktop/entries/ExecLine.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <glib.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::DesktopEntry;
using freedesktop::EntryIndex;

/// The entries that can be read and are not hidden. They get the ids of the input in order, as far
/// as there are enough.
EntryIndex indexOf(std::span<const std::string_view> files,
                   const std::vector<std::string>& identifiers) {
    std::vector<DesktopEntry> entries;
    for (const auto file : files) {
        auto entry = readEntry(file);
        if (!entry || entry->hidden) {
            continue;
        }
        if (entries.size() < identifiers.size()) {
            entry->identifier = identifiers[entries.size()];
        }
        entry->path = "/applications/" + std::to_string(entries.size()) + ".desktop";
        entry->name = freedesktop::entryName(entry->path);
        entries.push_back(std::move(*entry));
    }
    return EntryIndex(std::move(entries));
}

void requireEveryEntryIsFound(const EntryIndex& index) {
    for (const auto& entry : index.entries()) {
        const auto* const byIdentifier = index.withIdentifier(entry.identifier);
        require((byIdentifier == nullptr) == entry.identifier.empty(), "ids are found");
        require(byIdentifier == nullptr || byIdentifier->identifier == entry.identifier,
                "an id finds its entry");
        const auto* const byPath = index.withPath(entry.path);
        require(byPath != nullptr && byPath->path == entry.path, "a path finds its entry");
    }
}

bool isOf(const EntryIndex& index, const DesktopEntry* entry) {
    return std::ranges::any_of(index.entries(),
                               [entry](const DesktopEntry& known) { return &known == entry; });
}

void requireSoundOwner(const WindowText& text, const EntryIndex& index) {
    const auto owner = ownerOf(text.window, text.process, index);
    const auto* const entry = applicationOf(text.window, text.process, index);
    if (entry == nullptr) {
        require(owner.name == text.window.className && owner.bundleIdentifier.empty(),
                "without an entry the class is the owner");
        return;
    }
    require(isOf(index, entry), "an owner is installed");
    require(owner.name == entry->name && owner.bundleIdentifier == entry->identifier,
            "an owner is named after its entry");
}

/// What the window says of itself must not outweigh what its sandbox says. (Ids without a dot are
/// left out: they are those of snaps, whose applications need not begin with the whole id.)
void requireSandboxesHold(const WindowText& text, const EntryIndex& index) {
    const auto& sandbox = text.process.flatpakApplication;
    if (!text.window.sandboxApplicationId.empty() || sandbox.find('.') == std::string::npos ||
        index.withIdentifier(sandbox) == nullptr) {
        return;
    }
    const auto* const entry = applicationOf(text.window, text.process, index);
    require(entry != nullptr && entry->identifier.starts_with(sandbox),
            "a window of a sandbox belongs to the sandbox's application");
}

bool isUtf8(const std::string& text) {
    return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != FALSE;
}

void requireExecLineStartsIt(const std::string& program) {
    if (!program.starts_with('/') || !isUtf8(program)) {
        return;
    }
    const auto line = freedesktop::execLineFor(program);
    const bool isUnspeakable =
        program.find('%') != std::string::npos && program.find('=') != std::string::npos;
    require(line.has_value() != isUnspeakable, "every other program has a line");
    if (line) {
        DesktopEntry entry;
        entry.words = freedesktop::wordsOf(*line);
        const auto arguments = commandLineOf(entry);
        require(!arguments.empty() && arguments.back() == program, "a line starts its program");
    }
}

} // namespace
} // namespace hollowfernpike::test

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hollowfernpike::test;
    const auto parts = partsOf({reinterpret_cast<const char*>(data), size});
    const auto text = readWindow(parts.front());
    const auto index = indexOf(std::span(parts).subspan(1), text.identifiers);
    requireEveryEntryIsFound(index);
    requireSoundOwner(text, index);
    requireSandboxesHold(text, index);
    requireExecLineStartsIt(text.process.executable);
    return 0;
}
