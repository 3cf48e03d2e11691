#include "model/json/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace hollowfernpike {

namespace {

bool isWithin(std::uint8_t byte, std::uint8_t first, std::uint8_t last) {
    return byte >= first && byte <= last;
}

bool canFollow(std::uint8_t lead, std::uint8_t second) {
    switch (lead) {
    case 0xE0:
        return isWithin(second, 0xA0, 0xBF);
    case 0xED:
        return isWithin(second, 0x80, 0x9F);
    case 0xF0:
        return isWithin(second, 0x90, 0xBF);
    case 0xF4:
        return isWithin(second, 0x80, 0x8F);
    default:
        return isWithin(second, 0x80, 0xBF);
    }
}

std::size_t lengthByLead(std::uint8_t lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (isWithin(lead, 0xC2, 0xDF)) {
        return 2;
    }
    if (isWithin(lead, 0xE0, 0xEF)) {
        return 3;
    }
    return isWithin(lead, 0xF0, 0xF4) ? 4 : 0;
}

/// Most texts are ASCII: eight bytes at a step.
std::size_t skipAscii(std::string_view text, std::size_t start) {
    std::uint64_t word = 0;
    while (text.size() - start >= sizeof word) {
        std::memcpy(&word, text.data() + start, sizeof word);
        if ((word & 0x8080808080808080) != 0) {
            break;
        }
        start += sizeof word;
    }
    return start;
}

} // namespace

std::size_t utf8SequenceLength(std::string_view text) {
    const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    const auto length = text.empty() ? 0 : lengthByLead(byteAt(0));
    if (length > text.size() || (length > 1 && !canFollow(byteAt(0), byteAt(1)))) {
        return 0;
    }
    for (std::size_t index = 2; index < length; ++index) {
        if (!isWithin(byteAt(index), 0x80, 0xBF)) {
            return 0;
        }
    }
    return length;
}

std::size_t firstInvalidUtf8(std::string_view text) {
    std::size_t position = skipAscii(text, 0);
    while (position < text.size()) {
        const auto length = utf8SequenceLength(text.substr(position));
        if (length == 0) {
            return position;
        }
        position += length;
        if (length == 1) {
            position = skipAscii(text, position);
        }
    }
    return std::string_view::npos;
}

} // namespace hollowfernpike
