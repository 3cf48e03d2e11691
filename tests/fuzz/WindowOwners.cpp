// The input is a window that may lie about itself, on a desktop whose entry files may be anything:
// the window's facts, then the entry files, with lines of "%%" between them.

#include "platform/freedesktop/owners/WindowOwners.h"
#include "fuzz/Require.h"
#include "fuzz/Target.h"
#include "fuzz/WindowText.h"
#include "platform/LocalizedError.h"
#include "platform/freedesktop/entries/EntryFile.h"
#include "platform/freedesktop/entries/EntryIndex.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/posix/Descriptor.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <glib.h>
#include <sys/mman.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::DesktopEntry;
using freedesktop::EntryFile;
using freedesktop::EntryIndex;

/// A file of this content that has a path but lies on no disk.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view content)
        : descriptor_(::memfd_create("entry", MFD_CLOEXEC)) {
        const auto written = ::write(descriptor_.get(), content.data(), content.size());
        require(written == static_cast<ssize_t>(content.size()), "there is memory for a file");
    }

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_.get()); }

private:
    posix::Descriptor descriptor_;
};

bool isText(const std::string& text) {
    return text.find('\0') == std::string::npos;
}

void requireTextsInEveryLanguage(const std::string& path) {
    const EntryFile file(path, freedesktop::Translations::all);
    for (const auto* key : {"Name", "Keywords"}) {
        require(isText(file.text(key)) && isText(file.textIn("ja", key)), "values are texts");
        require(std::ranges::all_of(file.listIn("ja", key), isText), "lists hold texts");
    }
    require(!file.has("No such key") && file.text("No such key").empty(),
            "what is not there is empty");
    file.isForThisDesktop();
}

void requireStartable(const DesktopEntry& entry) {
    const auto arguments = commandLineOf(entry);
    require(std::ranges::all_of(arguments, isText), "arguments are texts");
    const auto isFieldCode = [](const std::string& word) {
        return word.size() == 2 && word.front() == '%';
    };
    require(entry.words.empty() || isFieldCode(entry.words.front()) || !arguments.empty(),
            "an entry with a program starts one");
}

void requireReadable(const platform::LocalizedError& error) {
    require(!error.japanese().empty() && !error.english().empty(), "an error says something");
}

/// Reads the text as the file of a desktop entry, in every way in which entry files are read.
/// Absent if it is none.
std::optional<DesktopEntry> readEntry(std::string_view text) {
    const MemoryFile file(text);
    try {
        requireTextsInEveryLanguage(file.path());
        auto entry = freedesktop::readDesktopEntry(file.path());
        requireStartable(entry);
        return entry;
    } catch (const platform::LocalizedError& error) {
        requireReadable(error);
        return std::nullopt;
    }
}

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
