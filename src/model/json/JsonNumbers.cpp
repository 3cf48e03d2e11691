#include "model/json/JsonNumbers.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

namespace hollowfernpike {

namespace {

/// The number `digits` times ten to the `exponent`; `digits` has no zeros at either end.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;
};

/// Exponents beyond about 2^62 either way are clamped. That changes no result: a number with such
/// an exponent is zero, or out of range, or, if the exponent is negative, no integer.
std::int64_t exponentValue(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    constexpr auto huge = std::numeric_limits<std::int64_t>::max() / 2;
    if (result.ec == std::errc::result_out_of_range || value > huge || value < -huge) {
        return text.starts_with('-') ? -huge : huge;
    }
    return value;
}

void trimZeros(Decimal& number) {
    number.digits.erase(0, number.digits.find_first_not_of('0'));
    while (number.digits.ends_with('0')) {
        number.digits.pop_back();
        ++number.exponent;
    }
}

Decimal decimal(std::string_view text) {
    Decimal result;
    result.negative = text.starts_with('-');
    text.remove_prefix(result.negative ? 1 : 0);
    if (const auto mark = text.find_first_of("eE"); mark != std::string_view::npos) {
        result.exponent = exponentValue(text.substr(mark + 1));
        text = text.substr(0, mark);
    }
    if (const auto point = text.find('.'); point != std::string_view::npos) {
        const auto fraction = text.substr(point + 1);
        result.digits = fraction;
        result.exponent -= static_cast<std::int64_t>(fraction.size());
        text = text.substr(0, point);
    }
    result.digits.insert(0, text);
    trimZeros(result);
    return result;
}

// Each of these returns the position behind the item that starts at the given position.

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

/// For a fraction or an exponent: a mark, perhaps a sign, digits. `at` if there is none.
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

// The zero has an exponent (0e000), because nothing can follow the digits of an exponent: text that
// is wrong behind a number, as in 1e400.5, is still wrong behind its zero. The sign stays, so that
// text that is wrong before a number, as in 1-1e400, is still wrong before its zero.
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

std::variant<std::uint64_t, IntegerFault> integerValue(std::string_view number,
                                                       std::uint64_t maximum) {
    auto value = decimal(number);
    if (value.digits.empty()) {
        return std::uint64_t{0};
    }
    if (value.exponent < 0) {
        return IntegerFault::notAnInteger;
    }
    if (value.negative || value.exponent > std::numeric_limits<std::uint64_t>::digits10) {
        return IntegerFault::outOfRange;
    }
    value.digits.append(static_cast<std::size_t>(value.exponent), '0');
    std::uint64_t integer = 0;
    const auto* const end = value.digits.data() + value.digits.size();
    const auto result = std::from_chars(value.digits.data(), end, integer);
    if (result.ec != std::errc{} || integer > maximum) {
        return IntegerFault::outOfRange;
    }
    return integer;
}

} // namespace hollowfernpike
