#include "workbench/statfiles/wire.h"

#include <gtest/gtest.h>

#include <cmath>

#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

TEST(Wire, WhatIsPutIsGot) {
  wire::Writer writer;
  writer.put(int64_t{-5});
  writer.putText("abc");
  const double numbers[] = {1.5, -2.0};
  writer.putNumbers(numbers, 2);
  wire::Reader reader(writer.bytes());
  EXPECT_EQ(reader.get<int64_t>(), -5);
  EXPECT_EQ(reader.getText(), "abc");
  EXPECT_EQ(reader.getBytes(16).size(), 16U);
  EXPECT_NO_THROW(reader.end());
}

TEST(Wire, LengthsAreNotBelieved) {
  wire::Writer writer;
  writer.put(uint32_t{5});
  writer.put('a');
  wire::Reader text(writer.bytes());
  EXPECT_THROW(text.getText(), wire::Malformed);
  wire::Reader number(writer.bytes());
  EXPECT_THROW(number.get<double>(), wire::Malformed);
  wire::Reader bytes(writer.bytes());
  EXPECT_THROW(bytes.getBytes(6), wire::Malformed);
  EXPECT_THROW(bytes.end(), wire::Malformed);
}

TEST(Wire, MissingNumbers) {
  EXPECT_TRUE(std::isnan(wire::missingNumber('\0')));
  EXPECT_EQ(wire::missingLetter(wire::missingNumber('\0')), '\0');
  for (const char letter : std::string("_abcdefghijklmnopqrstuvwxyz")) {
    EXPECT_TRUE(std::isnan(wire::missingNumber(letter)));
    EXPECT_EQ(wire::missingLetter(wire::missingNumber(letter)), letter);
  }
}

TEST(ExtendedMissing, NumbersAndTexts) {
  double before = 0;
  for (const char letter : std::string("_abcdefghijklmnopqrstuvwxyz")) {
    const auto number = extendedMissing(letter);
    ASSERT_TRUE(number);
    EXPECT_TRUE(isExtendedMissing(*number));
    EXPECT_GT(*number, before);
    EXPECT_EQ(extendedMissingText(*number), std::string(".") + letter);
    EXPECT_EQ(parseExtendedMissing(extendedMissingText(*number)), number);
    before = *number;
  }
  // By the definition of the format: .a is 2^1023 * (1 + 1/4096).
  EXPECT_EQ(extendedMissing('a'), 0x1.001p1023);
  EXPECT_EQ(extendedMissing('z'), 0x1.01ap1023);
  EXPECT_EQ(parseExtendedMissing(".A"), extendedMissing('a'));
  for (const char* text : {"", ".", "a", ".aa", "..", ".1"}) {
    EXPECT_FALSE(parseExtendedMissing(text)) << text;
  }
  EXPECT_FALSE(extendedMissing('A'));
  EXPECT_FALSE(isExtendedMissing(std::nextafter(0x1p1023, 0)));
  EXPECT_FALSE(isExtendedMissing(std::nextafter(0x1.01ap1023, HUGE_VAL)));
  EXPECT_EQ(extendedMissingText(1), "");
}

}  // namespace
}  // namespace workbench
