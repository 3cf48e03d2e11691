#include "platform/wayland/configuration/KernelKeyNames.h"

#include <algorithm>
#include <string_view>

namespace hollowfernpike::wayland {

namespace {

struct KernelKey {
    std::uint16_t evdev;
    std::string_view name;
};

/// Of linux/input-event-codes.h: the keys that people bind.
constexpr KernelKey kernelKeys[] = {
    {1, "KEY_ESC"},        {2, "KEY_1"},          {3, "KEY_2"},           {4, "KEY_3"},
    {5, "KEY_4"},          {6, "KEY_5"},          {7, "KEY_6"},           {8, "KEY_7"},
    {9, "KEY_8"},          {10, "KEY_9"},         {11, "KEY_0"},          {12, "KEY_MINUS"},
    {13, "KEY_EQUAL"},     {14, "KEY_BACKSPACE"}, {15, "KEY_TAB"},        {16, "KEY_Q"},
    {17, "KEY_W"},         {18, "KEY_E"},         {19, "KEY_R"},          {20, "KEY_T"},
    {21, "KEY_Y"},         {22, "KEY_U"},         {23, "KEY_I"},          {24, "KEY_O"},
    {25, "KEY_P"},         {26, "KEY_LEFTBRACE"}, {27, "KEY_RIGHTBRACE"}, {28, "KEY_ENTER"},
    {30, "KEY_A"},         {31, "KEY_S"},         {32, "KEY_D"},          {33, "KEY_F"},
    {34, "KEY_G"},         {35, "KEY_H"},         {36, "KEY_J"},          {37, "KEY_K"},
    {38, "KEY_L"},         {39, "KEY_SEMICOLON"}, {40, "KEY_APOSTROPHE"}, {41, "KEY_GRAVE"},
    {43, "KEY_BACKSLASH"}, {44, "KEY_Z"},         {45, "KEY_X"},          {46, "KEY_C"},
    {47, "KEY_V"},         {48, "KEY_B"},         {49, "KEY_N"},          {50, "KEY_M"},
    {51, "KEY_COMMA"},     {52, "KEY_DOT"},       {53, "KEY_SLASH"},      {55, "KEY_KPASTERISK"},
    {57, "KEY_SPACE"},     {59, "KEY_F1"},        {60, "KEY_F2"},         {61, "KEY_F3"},
    {62, "KEY_F4"},        {63, "KEY_F5"},        {64, "KEY_F6"},         {65, "KEY_F7"},
    {66, "KEY_F8"},        {67, "KEY_F9"},        {68, "KEY_F10"},        {69, "KEY_NUMLOCK"},
    {71, "KEY_KP7"},       {72, "KEY_KP8"},       {73, "KEY_KP9"},        {74, "KEY_KPMINUS"},
    {75, "KEY_KP4"},       {76, "KEY_KP5"},       {77, "KEY_KP6"},        {78, "KEY_KPPLUS"},
    {79, "KEY_KP1"},       {80, "KEY_KP2"},       {81, "KEY_KP3"},        {82, "KEY_KP0"},
    {83, "KEY_KPDOT"},     {86, "KEY_102ND"},     {87, "KEY_F11"},        {88, "KEY_F12"},
    {89, "KEY_RO"},        {92, "KEY_HENKAN"},    {94, "KEY_MUHENKAN"},   {95, "KEY_KPJPCOMMA"},
    {96, "KEY_KPENTER"},   {98, "KEY_KPSLASH"},   {102, "KEY_HOME"},      {103, "KEY_UP"},
    {104, "KEY_PAGEUP"},   {105, "KEY_LEFT"},     {106, "KEY_RIGHT"},     {107, "KEY_END"},
    {108, "KEY_DOWN"},     {109, "KEY_PAGEDOWN"}, {110, "KEY_INSERT"},    {111, "KEY_DELETE"},
    {117, "KEY_KPEQUAL"},  {121, "KEY_KPCOMMA"},  {124, "KEY_YEN"},       {183, "KEY_F13"},
    {184, "KEY_F14"},      {185, "KEY_F15"},      {186, "KEY_F16"},       {187, "KEY_F17"},
    {188, "KEY_F18"},      {189, "KEY_F19"},      {190, "KEY_F20"},
};

} // namespace

std::string kernelKeyName(std::uint16_t evdev) {
    const auto* const found = std::ranges::find(kernelKeys, evdev, &KernelKey::evdev);
    return found == std::ranges::end(kernelKeys) ? std::to_string(evdev) : std::string{found->name};
}

} // namespace hollowfernpike::wayland
