#include "model/KeyCodeMapper.h"

#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

const std::map<std::uint16_t, std::string> namedKeys{
    {0, "A"},       {1, "S"},        {2, "D"},        {3, "F"},        {4, "H"},
    {5, "G"},       {6, "Z"},        {7, "X"},        {8, "C"},        {9, "V"},
    {11, "B"},      {12, "Q"},       {13, "W"},       {14, "E"},       {15, "R"},
    {16, "Y"},      {17, "T"},       {18, "1"},       {19, "2"},       {20, "3"},
    {21, "4"},      {22, "6"},       {23, "5"},       {24, "="},       {25, "9"},
    {26, "7"},      {27, "-"},       {28, "8"},       {29, "0"},       {30, "]"},
    {31, "O"},      {32, "U"},       {33, "["},       {34, "I"},       {35, "P"},
    {36, "Return"}, {37, "L"},       {38, "J"},       {39, "'"},       {40, "K"},
    {41, ";"},      {42, "\\"},      {43, ","},       {44, "/"},       {45, "N"},
    {46, "M"},      {47, "."},       {48, "Tab"},     {49, "Space"},   {51, "Delete"},
    {53, "Escape"}, {82, "0"},       {83, "1"},       {84, "2"},       {85, "3"},
    {86, "4"},      {87, "5"},       {88, "6"},       {89, "7"},       {91, "8"},
    {92, "9"},      {122, "F1"},     {120, "F2"},     {99, "F3"},      {118, "F4"},
    {96, "F5"},     {97, "F6"},      {98, "F7"},      {100, "F8"},     {101, "F9"},
    {109, "F10"},   {103, "F11"},    {111, "F12"},    {105, "F13"},    {107, "F14"},
    {113, "F15"},   {123, "\u2190"}, {124, "\u2192"}, {125, "\u2193"}, {126, "\u2191"},
};

TEST(KeyCodeMapperTest, namesEightyKeys) {
    ASSERT_EQ(namedKeys.size(), 80U);
    for (const auto& [keyCode, name] : namedKeys) {
        EXPECT_EQ(KeyCodeMapper::keyName(keyCode), name) << keyCode;
    }
}

TEST(KeyCodeMapperTest, showsEveryOtherCodeAsANumber) {
    for (std::uint32_t keyCode = 0; keyCode <= 65535; ++keyCode) {
        const auto code = static_cast<std::uint16_t>(keyCode);
        if (!namedKeys.contains(code)) {
            ASSERT_EQ(KeyCodeMapper::keyName(code), "Key(" + std::to_string(keyCode) + ")");
        }
    }
}

TEST(KeyCodeMapperTest, callsKeypadDigitsAsThoseOfTheTopRow) {
    EXPECT_EQ(KeyCodeMapper::keyName(82), KeyCodeMapper::keyName(29));
    EXPECT_EQ(KeyCodeMapper::keyName(83), KeyCodeMapper::keyName(18));
}

TEST(KeyCodeMapperTest, answersOnEveryThread) {
    std::vector<std::string> names(8);
    std::vector<std::thread> threads;
    for (auto& name : names) {
        threads.emplace_back([&name] { name = KeyCodeMapper::keyName(36); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(names, std::vector<std::string>(8, "Return"));
}

} // namespace
} // namespace hollowfernpike::test
