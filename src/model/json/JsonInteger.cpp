#include "model/json/JsonInteger.h"

#include <charconv>
#include <limits>
#include <string>

namespace hollowfernpike {

namespace {

/// A number as an integer of `digits`, without zeros at either end, times ten to the `exponent`.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;
};

/// An exponent too large to be read is as good as a very large one: it is out of range or, with
/// the opposite sign, no integer whatever the digits are.
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

} // namespace

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
