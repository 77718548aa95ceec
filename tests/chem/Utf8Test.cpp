#include "chem/database/Utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

std::string Encode(std::uint32_t c) {
  const auto tail = [c](unsigned shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) return {static_cast<char>(c)};
  if (c < 0x800) return {static_cast<char>(0xC0 | c >> 6), tail(0)};
  if (c < 0x10000) return {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

// Whether the bytes are one character: takes the payload bits, whatever they are, and encodes them again.
bool IsCharacter(const std::string& bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  std::uint32_t c = bytes.size() == 1 ? lead : lead & (0x7F >> bytes.size());
  for (std::size_t i = 1; i < bytes.size(); ++i) c = c << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3F);
  return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF) && Encode(c) == bytes;
}

// The definition, character by character.
std::size_t FindInvalidByDefinition(const std::string& text) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    std::size_t length = 1;
    while (length <= 4 && !(pos + length <= text.size() && IsCharacter(text.substr(pos, length)))) ++length;
    if (length > 4) return pos;
    pos += length;
  }
  return pos;
}

TEST(Utf8, EveryCharacterIsValidAndSurrogatesAreNot) {
  for (std::uint32_t c = 0; c <= 0x110000; ++c) {
    const bool valid = c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
    const std::string text = Encode(c);
    ASSERT_EQ(QXChem::FindInvalidUtf8(text), valid ? text.size() : 0) << c;
  }
}

TEST(Utf8, ShortByteStringsAgreeWithTheDefinition) {
  for (unsigned a = 0; a < 256; ++a) {
    for (unsigned b = 0; b < 256; ++b) {
      for (const unsigned c :
           {0x00u, 0x41u, 0x7Fu, 0x80u, 0x8Fu, 0x90u, 0x9Fu, 0xA0u, 0xBFu, 0xC0u, 0xF4u, 0xFFu}) {
        const std::string text = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)};
        ASSERT_EQ(QXChem::FindInvalidUtf8(text), FindInvalidByDefinition(text)) << a << ' ' << b << ' ' << c;
      }
    }
  }
}

// Long runs of ASCII take a short cut: faults must be found at every distance from it.
TEST(Utf8, DamagedTextsAgreeWithTheDefinition) {
  std::mt19937 random(20240517);
  const std::string parts[] = {"C", "CCCCCCCCCCCCCCC", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (int i = 0; i < 6; ++i) text += parts[random() % 5];
    if (round % 2 == 0) text[random() % text.size()] = static_cast<char>(random() % 256);
    if (round % 3 == 0) text.resize(random() % text.size());
    ASSERT_EQ(QXChem::FindInvalidUtf8(text), FindInvalidByDefinition(text)) << testing::PrintToString(text);
  }
}

}  // namespace
