#include "host/Text.h"

#include <gtest/gtest.h>

namespace {

using Host::FromUtf8;
using Host::Printable;

struct Character {
    const char* name;
    const char* utf8;
    wchar_t character;
};

void PrintTo(const Character& character, std::ostream* out) {
    *out << character.name;
}

class Characters : public ::testing::TestWithParam<Character> {};
INSTANTIATE_TEST_SUITE_P(
    Text, Characters,
    ::testing::Values(Character{"Space", " ", L' '}, Character{"Tilde", "~", L'~'},
                      Character{"FirstOfTwoBytes", "\xC2\xA0", 0xA0},
                      Character{"LastOfTwoBytes", "\xDF\xBF", 0x7FF},
                      Character{"FirstOfThreeBytes", "\xE0\xA0\x80", 0x800},
                      Character{"InFrontOfTheSurrogates", "\xED\x9F\xBF", 0xD7FF},
                      Character{"BehindTheSurrogates", "\xEE\x80\x80", 0xE000},
                      Character{"LastOfThreeBytes", "\xEF\xBF\xBF", 0xFFFF},
                      Character{"FirstOfFourBytes", "\xF0\x90\x80\x80", 0x10000},
                      Character{"LastOfFourBytes", "\xF4\x8F\xBF\xBF", 0x10FFFF}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(Characters, GoBothWays) {
    const std::wstring text = {L'a', GetParam().character, L'z'};
    const std::string bytes = std::string("a") + GetParam().utf8 + "z";
    EXPECT_EQ(Printable(text), bytes);
    EXPECT_EQ(FromUtf8(bytes), text);
}

TEST(Text, WhatSteersATerminalOrIsNoCharacterIsReplaced) {
    for (const int code : {0, 0x0A, 0x1B, 0x1F, 0x7F, 0x85, 0x9F, 0xD800, 0xDFFF, 0x110000, -1})
        EXPECT_EQ(Printable(std::wstring(1, static_cast<wchar_t>(code))), "\xEF\xBF\xBD") << code;
}

TEST(Text, DamagedUtf8IsNoText) {
    for (const char* const bytes :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2z", "\xE0\x9F\xBF", "\xE1\x80",
          "\xE1\x80z", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF1\x80\x80",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
        EXPECT_EQ(FromUtf8(bytes), std::nullopt) << bytes;
    EXPECT_EQ(FromUtf8(""), std::wstring());
}

}  // namespace
