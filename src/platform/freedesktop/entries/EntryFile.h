#pragma once

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/GlibPointers.h"

#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Which translations of a file's texts are kept. Keeping all takes twice as long.
enum class Translations { current, all };

/// An entry file as it is written: the keys of its main group, already unescaped.
class EntryFile {
public:
    /// Reads the file. Throws platform::LocalizedError if there is none, it cannot be read or its
    /// form is wrong; never waits for a pipe or a device.
    explicit EntryFile(const std::string& path, Translations translations = Translations::current);

    /// Taken before the file was read.
    const FileStamp& stamp() const { return stamp_; }

    bool has(const char* key) const;

    /// Empty, or `otherwise`, if the key is missing or its value is invalid.
    std::string text(const char* key) const;
    bool flag(const char* key, bool otherwise = false) const;
    std::vector<std::string> list(const char* key) const;

    /// In the language of the session, else untranslated.
    std::string translatedText(const char* key) const;

    /// In a language such as "ja", else untranslated. Needs Translations::all.
    std::string textIn(const std::string& language, const char* key) const;
    std::vector<std::string> listIn(const std::string& language, const char* key) const;

    /// Whether the entry is for the desktop in $XDG_CURRENT_DESKTOP (OnlyShowIn, NotShowIn).
    bool isForThisDesktop() const;

private:
    GKeyFile* keys() const { return keys_.get(); }

    FileStamp stamp_;
    KeyFilePointer keys_;
};

} // namespace hollowfernpike::freedesktop
