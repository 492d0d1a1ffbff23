#include "host/display.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

#include "host/constants.h"
#include "workbench/session/session.h"

namespace workbench {
namespace {

/// What `write` puts on the session's display.
template <typename Write>
std::string displayed(Write write) {
  char* content = nullptr;
  size_t size = 0;
  Session session;
  session.display = open_memstream(&content, &size);
  {
    const SessionScope scope(session);
    write();
  }
  std::fclose(session.display);
  const std::unique_ptr<char, decltype(&std::free)> owner(content, &std::free);
  return {content, size};
}

TEST(Display, TextStandsAsItIsAndEndsItsLine) {
  EXPECT_EQ(displayed([] { BP_ToFront("a%d\nb"); }), "a%d\nb\n");
  EXPECT_EQ(displayed([] {
              BP_ToFront("a\n");
              BP_ToFront("");
              BP_ToFront("b");
            }),
            "a\n\nb\n");
}

TEST(Display, OneLinePerValue) {
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayB("flag", true); }), "flag: true\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayI("i", -2147483647 - 1); }),
            "i: -2147483648\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayS("s", "x\"y"); }), "s: \"x\"y\"\n");
}

TEST(Display, DoublesReadBack) {
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayD("d", 0.1); }), "d: 0.10000000000000001\n");
  for (const double value : {1.0 / 3, 5e-324, -std::numeric_limits<double>::max() / 2, 95.0}) {
    const std::string line = displayed([&] { ACACommonDisplay::DisplayD("", value); });
    EXPECT_EQ(std::strtod(line.c_str() + 2, nullptr), value) << line;
  }
}

TEST(Display, TheMissingValueIsNoNumber) {
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayD("d", kSystemMissing); }), "d: missing\n");
  EXPECT_EQ(displayed([] {
              ACACommonDisplay::DisplayDV("d", {1, kSystemMissing});
            }),
            "d: [1, missing]\n");
}

TEST(Display, EveryLineIsWrittenAtOnce) {
  char* content = nullptr;
  size_t size = 0;
  Session session;
  session.display = open_memstream(&content, &size);
  const SessionScope scope(session);
  BP_ToFront("a");
  EXPECT_EQ(size, 2U);
  ACACommonDisplay::DisplayI("i", 7);
  EXPECT_EQ(size, 7U);
  std::fclose(session.display);
  std::free(content);
}

TEST(Display, ListsInBrackets) {
  EXPECT_EQ(displayed([] {
              ACACommonDisplay::DisplayBV("b", {true, false});
            }),
            "b: [true, false]\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayIV("i", {1, -2}); }), "i: [1, -2]\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayDV("d", {0.5, 2}); }), "d: [0.5, 2]\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplaySV("s", {"a", ""}); }), "s: [\"a\", \"\"]\n");
  EXPECT_EQ(displayed([] { ACACommonDisplay::DisplayDV("d", {}); }), "d: []\n");
}

}  // namespace
}  // namespace workbench
