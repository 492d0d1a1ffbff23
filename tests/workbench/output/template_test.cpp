#include "workbench/output/template.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TemplateItem plain(const std::string& text) { return {text, false, {}}; }
TemplateItem list(std::vector<std::string> elements) {
  return {"joined", true, std::move(elements)};
}

struct Example {
  const char* form;
  std::vector<TemplateItem> items;
  const char* expected;
};

TEST(Template, FillsPlaceholdersAndRuns) {
  const Example examples[] = {
      {"^1 = ^2", {plain("x"), plain("1")}, "x = 1"},
      {"^2, ^1, ^2", {plain("a"), plain("b")}, "b, a, b"},
      {"^1% Confidence Interval", {plain("99.9")}, "99.9% Confidence Interval"},
      {"^1 = [%1:, ^1:]2", {plain("x"), list({"1"})}, "x = 1"},
      {"^1 = [%1:, ^1:]2", {plain("x"), list({"1", "2", "3"})}, "x = 1, 2, 3"},
      {"^1 = [%1:, ^1:]2", {plain("x"), list({})}, "x = "},
      {"[%1 = %2:,^1 = ^2:]1", {list({"region", "north"})}, "region = north"},
      {"[%1 = %2:,^1 = ^2:]1", {list({"region", "north", "sex", "m"})}, "region = north,sex = m"},
      {"[%2 of %1:; ^2 of ^1:]1", {list({"a", "1", "b", "2"})}, "1 of a; 2 of b"},
      {"a [%1:^1:]1 b ^2", {list({"x", "y"}), plain("z")}, "a xy b z"},
      {"^1^2", {plain("^2"), plain("[%1:^1:]1")}, "^2[%1:^1:]1"},
      {"^1", {list({"a", "b"})}, "joined"},
      {"no placeholder", {plain("x")}, "no placeholder"},
      {"", {plain("x")}, ""},
  };
  for (const Example& example : examples) {
    EXPECT_EQ(fillTemplate(example.form, example.items), example.expected) << example.form;
  }
}

TEST(Template, LeavesWhatIsNoPlaceholderAsItStands) {
  const std::vector<TemplateItem> items{plain("x"), list({"1", "2"})};
  for (const char* form : {"^", "^^", "^0", "^3", "^9999", "a^", "%1", "[", "[]", "[:]", "[::]"}) {
    EXPECT_EQ(fillTemplate(form, items), form);
  }
  // A caret with the number of an item is a placeholder inside a broken run, too.
  for (const char* form : {"[%1:, ^:", "[%1:, ^]2", "[%1:, ^:]", "[%1:, ^:]3", "[%1:, ^:]0"}) {
    EXPECT_EQ(fillTemplate(form, items), form);
  }
  EXPECT_EQ(fillTemplate("[%1:, ^1:", items), "[%1:, x:");
  EXPECT_EQ(fillTemplate("[%1:, ^1:]1", items), "[%1:, x:]1") << "item 1 is no list";
}

TEST(Template, KeepsAnElementThatIsCutShort) {
  EXPECT_EQ(fillTemplate("[%1=%2:;^1=^2:]1", std::vector<TemplateItem>{list({"a", "1", "b"})}),
            "a=1;b=^2");
}

TEST(Template, TakesAnyTextWithoutRunningAway) {
  // Every string of up to six of the signs that mean something.
  const std::string signs = "[:]^%1";
  const std::vector<TemplateItem> items{list({"p", "q", "r"})};
  size_t texts = 0;
  for (size_t length = 0; length <= 6; ++length) {
    size_t combinations = 1;
    for (size_t i = 0; i < length; ++i) combinations *= signs.size();
    for (size_t number = 0; number < combinations; ++number) {
      std::string form;
      for (size_t i = 0, rest = number; i < length; ++i, rest /= signs.size()) {
        form += signs[rest % signs.size()];
      }
      ASSERT_LE(fillTemplate(form, items).size(), 8 * form.size()) << form;
      ++texts;
    }
  }
  EXPECT_EQ(texts, 1u + 6 + 36 + 216 + 1296 + 7776 + 46656);
}

}  // namespace
}  // namespace workbench
