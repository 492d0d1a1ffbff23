#include "tests/transcripts/repeated_labels.h"

#include <gtest/gtest.h>

namespace {

TEST(RepeatedLabels, OnlyWhatOccursAgainHasAName) {
  EXPECT_EQ(
      withRepeatedLabelsNamed("a composite \"x\" [1]\nb composite \"y\"\nc composite \"x\" [1]"),
      "a label#1 = composite \"x\" [1]\nb composite \"y\"\nc label#1");
}

TEST(RepeatedLabels, EveryItemBelongsToTheLabel) {
  EXPECT_EQ(withRepeatedLabelsNamed("composite \"x\" [1] [2] | composite \"x\" [1] | "
                                    "composite \"x\" [1] [2]: 5"),
            "label#1 = composite \"x\" [1] [2] | composite \"x\" [1] | label#1: 5");
}

TEST(RepeatedLabels, QuotesAndBracketsInsideItemsDoNotEndThem) {
  const std::string label = R"(composite "^1 \" = ^2" [list [value "]" pref 2] [value "\"["]])";
  EXPECT_EQ(withRepeatedLabelsNamed(label + ", " + label), "label#1 = " + label + ", label#1");
}

TEST(RepeatedLabels, NamesCountInTheOrderOfTheFirstPlaces) {
  EXPECT_EQ(
      withRepeatedLabelsNamed("composite \"b\" composite \"a\" composite \"a\" composite \"b\""),
      "label#1 = composite \"b\" label#2 = composite \"a\" label#2 label#1");
}

}  // namespace
