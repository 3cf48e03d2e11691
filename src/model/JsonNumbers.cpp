#include "model/JsonNumbers.h"

#include <algorithm>

namespace hollowfernpike {

namespace {

// Each of these returns the place behind what starts at the given one.

std::size_t endOfString(std::string_view text, std::size_t quote) {
    std::size_t at = quote + 1;
    while (at < text.size() && text[at] != '"') {
        at = text.find_first_of("\"\\", text[at] == '\\' ? at + 2 : at + 1);
    }
    return std::min(at, text.size() - 1) + 1;
}

std::size_t endOfDigits(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of("0123456789", at), text.size());
}

bool isOneOf(std::string_view signs, std::string_view text, std::size_t at) {
    return at < text.size() && signs.find(text[at]) != std::string_view::npos;
}

/// A fraction or an exponent: a mark, perhaps a sign, digits. Without digits there is none.
std::size_t endOfPart(std::string_view text, std::size_t at, std::string_view marks,
                      std::string_view signs) {
    if (!isOneOf(marks, text, at)) {
        return at;
    }
    const auto start = at + (isOneOf(signs, text, at + 1) ? 2 : 1);
    const auto end = endOfDigits(text, start);
    return end > start ? end : at;
}

std::size_t endOfNumber(std::string_view text, std::size_t at) {
    const auto start = at + (text[at] == '-' ? 1 : 0);
    const auto end = isOneOf("0", text, start) ? start + 1 : endOfDigits(text, start);
    return end == start ? end : endOfPart(text, endOfPart(text, end, ".", ""), "eE", "+-");
}

} // namespace

// A zero with an exponent: its digits are the last part that a number can have, so what is wrong
// behind a number, as in 1e400.5, is as wrong behind its zero. The sign stays, so that what is
// wrong before a number, as in 1-1e400, is so before its zero, too.
std::string withZerosForNumbers(std::string_view document) {
    std::string result{document};
    std::size_t at = 0;
    while ((at = document.find_first_of("\"-0123456789", at)) != std::string_view::npos) {
        const bool isString = document[at] == '"';
        const auto end = isString ? endOfString(document, at) : endOfNumber(document, at);
        const auto start = document[at] == '-' ? at + 1 : at;
        if (!isString && end > start + 2) {
            result.replace(start, end - start, end - start, '0').replace(start + 1, 1, 1, 'e');
        }
        at = end;
    }
    return result;
}

} // namespace hollowfernpike
