#include "model/KeyCodeMapper.h"

#include "model/Letters.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace hollowfernpike {

namespace {

struct Entry {
    std::uint16_t keyCode;
    std::string_view name;
};

constexpr std::array<Entry, 80> keyCodeMap{{
    {0, "A"},      {1, "S"},       {2, "D"},       {3, "F"},     {4, "H"},     {5, "G"},
    {6, "Z"},      {7, "X"},       {8, "C"},       {9, "V"},     {11, "B"},    {12, "Q"},
    {13, "W"},     {14, "E"},      {15, "R"},      {16, "Y"},    {17, "T"},    {18, "1"},
    {19, "2"},     {20, "3"},      {21, "4"},      {22, "6"},    {23, "5"},    {24, "="},
    {25, "9"},     {26, "7"},      {27, "-"},      {28, "8"},    {29, "0"},    {30, "]"},
    {31, "O"},     {32, "U"},      {33, "["},      {34, "I"},    {35, "P"},    {36, "Return"},
    {37, "L"},     {38, "J"},      {39, "'"},      {40, "K"},    {41, ";"},    {42, "\\"},
    {43, ","},     {44, "/"},      {45, "N"},      {46, "M"},    {47, "."},    {48, "Tab"},
    {49, "Space"}, {51, "Delete"}, {53, "Escape"}, {82, "0"},    {83, "1"},    {84, "2"},
    {85, "3"},     {86, "4"},      {87, "5"},      {88, "6"},    {89, "7"},    {91, "8"},
    {92, "9"},     {96, "F5"},     {97, "F6"},     {98, "F7"},   {99, "F3"},   {100, "F8"},
    {101, "F9"},   {103, "F11"},   {105, "F13"},   {107, "F14"}, {109, "F10"}, {111, "F12"},
    {113, "F15"},  {118, "F4"},    {120, "F2"},    {122, "F1"},  {123, "←"},   {124, "→"},
    {125, "↓"},    {126, "↑"},
}};

static_assert(std::ranges::adjacent_find(keyCodeMap, std::ranges::greater_equal{},
                                         &Entry::keyCode) == keyCodeMap.end(),
              "the codes must rise for the search, each of them once");

std::optional<std::uint16_t> codeIn(std::string_view name) {
    constexpr std::string_view beginning = "Key(";
    if (!isSameButForCapitals(name.substr(0, beginning.size()), beginning) ||
        !name.ends_with(')')) {
        return std::nullopt;
    }
    std::uint16_t code = 0;
    const char* const end = name.data() + name.size() - 1;
    const auto read = std::from_chars(name.data() + beginning.size(), end, code);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(code) : std::nullopt;
}

} // namespace

std::string KeyCodeMapper::keyName(std::uint16_t keyCode) {
    const auto* const entry = std::ranges::lower_bound(keyCodeMap, keyCode, {}, &Entry::keyCode);
    if (entry != keyCodeMap.end() && entry->keyCode == keyCode) {
        return std::string{entry->name};
    }
    return codeName(keyCode);
}

std::string KeyCodeMapper::codeName(std::uint16_t keyCode) {
    return "Key(" + std::to_string(keyCode) + ')';
}

// The codes of the keypad are the higher ones.
std::optional<std::uint16_t> KeyCodeMapper::keyCode(std::string_view name) {
    const auto* const entry = std::ranges::find_if(keyCodeMap, [name](const Entry& candidate) {
        return isSameButForCapitals(name, candidate.name);
    });
    return entry == keyCodeMap.end() ? codeIn(name) : entry->keyCode;
}

} // namespace hollowfernpike
