#include "workbench/delimited/structure.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "workbench/delimited/part_head.h"

namespace workbench {
namespace {

std::string randomText(std::mt19937& random, size_t size) {
  static constexpr std::string_view kCharacters = "ab1,;\"\n\r\r\n\n\xC3\xA9 \t";
  std::string text;
  for (size_t i = 0; i < size; ++i) text += kCharacters[random() % kCharacters.size()];
  return text;
}

std::vector<uint32_t> plainPositions(const std::string& text, size_t size, char delimiter,
                                     bool quotes) {
  std::vector<uint32_t> positions;
  for (size_t i = 0; i < size; ++i) {
    const char c = text[i];
    if (c == delimiter || c == '\n' || (c == '\r' && text[i + 1] != '\n') || (quotes && c == '"')) {
      positions.push_back(static_cast<uint32_t>(i));
    }
  }
  return positions;
}

class Structure : public testing::TestWithParam<const StructureFunctions*> {};

TEST_P(Structure, FindsWhatAPlainLoopFinds) {
  std::mt19937 random(1);
  for (size_t size = 0; size < 300; ++size) {
    const std::string text = randomText(random, size) + std::string(kReadBeyond, '\0');
    for (const bool quotes : {false, true}) {
      std::vector<uint32_t> found(size + kReadBeyond);
      found.resize(GetParam()->find(text.data(), size, ';', quotes, found.data()));
      EXPECT_EQ(found, plainPositions(text, size, ';', quotes)) << size;
    }
  }
}

TEST_P(Structure, WhatFollowsATextIsNoPartOfIt) {
  std::string text = "a\r\n" + std::string(kReadBeyond, ',');
  std::vector<uint32_t> found(2 + kReadBeyond);
  EXPECT_EQ(GetParam()->find(text.data(), 2, ',', true, found.data()), 0U);
  const TextSurvey seen = GetParam()->survey(text.data(), 2);
  EXPECT_EQ(seen.carriageReturns, 1U);
  EXPECT_EQ(seen.pairs, 0U);
  EXPECT_EQ(seen.lineFeeds, 0U);
}

TEST_P(Structure, SurveysAllBytes) {
  std::mt19937 random(2);
  for (size_t size = 0; size < 300; ++size) {
    std::string text = randomText(random, size);
    if (size % 7 == 3) text[random() % size] = '\0';
    const size_t lines = countLineEnds(text);
    const TextSurvey seen =
        GetParam()->survey((text + std::string(kReadBeyond, '\n')).data(), size);
    EXPECT_EQ(seen.lineEnds(), lines) << size;
    EXPECT_EQ(seen.quotes, text.find('"') != std::string::npos);
    EXPECT_EQ(seen.zeros, text.find('\0') != std::string::npos);
    EXPECT_EQ(seen.beyondAscii, text.find_first_of("\xC3\xA9") != std::string::npos);
  }
}

INSTANTIATE_TEST_SUITE_P(, Structure, testing::ValuesIn(availableStructureFunctions()),
                         [](const auto& tested) { return std::string(tested.param->name); });

}  // namespace
}  // namespace workbench
