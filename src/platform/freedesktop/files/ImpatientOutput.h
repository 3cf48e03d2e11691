#pragma once

#include <streambuf>
#include <string>
#include <string_view>

namespace hollowfernpike::freedesktop {

/// Writes the text to a descriptor, as far as that is possible at once: the rest is lost if whoever
/// should read it does not. Nobody must be held up because diagnostics are not read.
void writeWithoutWaiting(int descriptor, std::string_view text);

/// The buffer of a stream that does so whenever the stream is flushed.
class ImpatientOutput final : public std::streambuf {
public:
    explicit ImpatientOutput(int descriptor) : descriptor_(descriptor) {}

protected:
    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            text_ += traits_type::to_char_type(character);
        }
        return traits_type::not_eof(character);
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override {
        text_.append(text, static_cast<std::size_t>(count));
        return count;
    }

    int sync() override {
        writeWithoutWaiting(descriptor_, text_);
        text_.clear();
        return 0;
    }

private:
    int descriptor_;
    std::string text_;
};

} // namespace hollowfernpike::freedesktop
