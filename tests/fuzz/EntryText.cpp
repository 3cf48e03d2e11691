#include "fuzz/EntryText.h"

#include "fuzz/Require.h"
#include "platform/LocalizedError.h"
#include "platform/freedesktop/entries/EntryFile.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/files/Descriptor.h"

#include <algorithm>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

using freedesktop::DesktopEntry;
using freedesktop::EntryFile;

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
    freedesktop::Descriptor descriptor_;
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

} // namespace

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

} // namespace hollowfernpike::test
