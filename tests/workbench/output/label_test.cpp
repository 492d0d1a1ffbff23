#include "workbench/output/labels.h"

#include <limits>

#include "output_fixture.h"
#include "workbench/output/distinguish.h"

namespace workbench {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class Labels : public OutputTest {};

TEST_F(Labels, VariablesAndValuesAreShownByTheirLabels) {
  const VarIndex labelled = data.addNumber("v1", "Age group", {{1, "young"}, {2, "old"}});
  const VarIndex bare = data.addNumber("v2");
  EXPECT_EQ(describe(BpVariable(labelled, 2)).text, "Age group");
  EXPECT_EQ(describe(BpVariable(labelled, 2)).key, "v1");
  EXPECT_EQ(describe(BpVariable(bare, 2)).text, "v2");
  EXPECT_EQ(
      describe(composite("^1 = ^2", BpVariable(labelled, 2), BpDataValue(labelled, 1.0, 2))).text,
      "Age group = young");
  EXPECT_EQ(
      describe(composite("^1 = ^2", BpVariable(labelled, 2), BpDataValue(labelled, 1.0, 0))).text,
      "Age group = 1");
  EXPECT_EQ(
      describe(composite("^1 = ^2", BpVariable(labelled, 2), BpDataValue(labelled, 7.0, 2))).text,
      "Age group = 7");
}

TEST_F(Labels, StringsAreShownByTheirLabelsToo) {
  const VarIndex arm = data.addString("arm", "", {{"c", "control"}});
  const auto shown = [&](const std::string& value, int preference) {
    return describe(composite("= ^1", BpDataValue(arm, value, preference))).text;
  };
  EXPECT_EQ(shown("c", 2), "= control");
  EXPECT_EQ(shown("c", 0), "= c");
  EXPECT_EQ(shown("c   ", 2), "= control") << "trailing blanks never count";
  EXPECT_EQ(shown("  c", 2), "=   c");
}

TEST_F(Labels, NumbersAreInShortestForm) {
  const VarIndex x = data.addNumber("x");
  const auto number = [](double value) {
    return describe(composite("^1", labelNumber(value))).text;
  };
  const auto value = [&](double v) { return describe(composite("^1", BpDataValue(x, v, 2))).text; };
  EXPECT_EQ(number(95), "95");
  EXPECT_EQ(number(99.9), "99.9");
  EXPECT_EQ(number(0.1), "0.1");
  EXPECT_EQ(number(1e300), "1e+300");
  EXPECT_EQ(value(2.5), "2.5");
  EXPECT_EQ(value(-0.0), "0");
  EXPECT_EQ(value(kSystemMissing), ".");
  EXPECT_EQ(number(kNaN), "NaN");
}

TEST_F(Labels, IdentityIsStructure) {
  const VarIndex a = data.addNumber("a", "Same", {{1, "yes"}, {2, "yes"}});
  const VarIndex b = data.addNumber("b", "Same", {{1, "yes"}, {2, "yes"}});
  const VarIndex s = data.addString("s");
  const auto equals = [](const char* form, VarIndex variable, double value, int preference) {
    return identityOf(
        composite(form, BpVariable(variable, 2), BpDataValue(variable, value, preference)));
  };
  const std::string base = equals("^1 = ^2", a, 1, 2);
  EXPECT_EQ(equals("^1 = ^2", a, 1, 2), base);
  EXPECT_NE(equals("^1 = ^2", b, 1, 2), base) << "another variable that reads alike";
  EXPECT_NE(equals("^1 = ^2", a, 2, 2), base) << "another value that reads alike";
  EXPECT_NE(equals("^1 = ^2", a, 1, 0), base) << "another preference";
  EXPECT_NE(equals("^1 >= ^2", a, 1, 2), base) << "another template";
  EXPECT_NE(identityOf(text("Same = yes")), base) << "a text";
  EXPECT_EQ(equals("^1 = ^2", a, 0.0, 2), equals("^1 = ^2", a, -0.0, 2));
  EXPECT_NE(identityOf(BpVariable(a, 2)), identityOf(BpVariable(b, 2)));
  EXPECT_NE(identityOf(BpVariable(a, 2)), identityOf(BpVariable(a, 1)));
  EXPECT_NE(identityOf(BpVariable(a, 2)), identityOf(text("Same")));
  EXPECT_NE(identityOf(composite("^1", BpDataValue(s, "1", 2))),
            identityOf(composite("^1", BpDataValue(s, 1.0, 2))));
  EXPECT_EQ(identityOf(composite("^1", labelNumber(95))), identityOf(composite("^1", count(95))));
  EXPECT_NE(identityOf(composite("^1", labelNumber(95))), identityOf(composite("^1", count(96))));
}

TEST_F(Labels, PartsOfAnIdentityDoNotRunIntoEachOther) {
  const VarIndex s = data.addString("s");
  const auto pairOf = [&](const char* first, const char* second) {
    return identityOf(composite("^1^2", BpDataValue(s, first, 2), BpDataValue(s, second, 2)));
  };
  EXPECT_NE(pairOf("ab", "c"), pairOf("a", "bc"));
  BpComposite inList("^1");
  inList.Sublist();
  inList.Add(labelNumber(1));
  inList.Add(labelNumber(2));
  inList.EndSublist();
  BpComposite beside("^1");
  beside.Sublist();
  beside.Add(labelNumber(1));
  beside.EndSublist();
  beside.Add(labelNumber(2));
  EXPECT_NE(identityOf(inList), identityOf(beside));
}

TEST_F(Labels, SublistIsOneItem) {
  const VarIndex x = data.addNumber("x", "", {{2, "two"}});
  BpComposite label("^1 = [%1:, ^1:]2");
  label.Add(BpVariable(x, 2));
  label.Sublist();
  for (const double level : {1.0, 2.0, 3.0}) label.Add(BpDataValue(x, level, 2));
  label.EndSublist();
  label.Finish();
  const LabelData shown = describe(label);
  EXPECT_EQ(shown.text, "x = 1, two, 3");
  EXPECT_EQ(shown.key, "^1 = [%1:, ^1:]2");
  EXPECT_EQ(shown.owner, "x");
  EXPECT_EQ(shown.variables, std::vector<std::string>{"x"});
  ASSERT_EQ(shown.values.size(), 3u);
  EXPECT_TRUE(shown.isValueList);
  EXPECT_EQ(shown.values[1].shown, "two");
  EXPECT_EQ(std::get<double>(shown.values[1].exact), 2.0);
}

TEST_F(Labels, CatalogueGivesTextsAndTheKeyStays) {
  catalogue = Catalogue::parse(R"({"Pair ^1 vars ^2 ^3 ...": "Pair ^1: ^2 - ^3", "Wald": "W"})");
  const VarIndex a = data.addNumber("a"), b = data.addNumber("b");
  const LabelData pair =
      describe(composite("Pair ^1 vars ^2 ^3 ...", count(3), BpVariable(a, 2), BpVariable(b, 2)));
  EXPECT_EQ(pair.text, "Pair 3: a - b");
  EXPECT_EQ(pair.key, "Pair ^1 vars ^2 ^3 ...");
  EXPECT_EQ(describe(text("Wald")).text, "W");
  EXPECT_EQ(describe(text("Wald")).key, "Wald");
  EXPECT_EQ(describe(text("Unknown ...")).text, "Unknown ...");
}

TEST_F(Labels, TellsWhetherAMissingValueShows) {
  const VarIndex x = data.addNumber("x"), s = data.addString("s");
  EXPECT_TRUE(describe(composite("^1", BpDataValue(x, kSystemMissing, 2))).showsMissing);
  EXPECT_TRUE(describe(composite("^1", BpDataValue(s, "  ", 2))).showsMissing);
  EXPECT_FALSE(describe(composite("^1", BpDataValue(x, 0.0, 2))).showsMissing);
  EXPECT_FALSE(describe(composite("^1", BpVariable(x, 2))).showsMissing);
  EXPECT_FALSE(describe(text(".")).showsMissing);
}

TEST_F(Labels, BytesThatAreNoUtf8AreReplaced) {
  const VarIndex x = data.addString("bad\xFFname", "la\xC3");
  EXPECT_EQ(describe(BpVariable(x, 2)).text, "la\xEF\xBF\xBD");
  EXPECT_EQ(describe(BpVariable(x, 2)).key, "bad\xEF\xBF\xBDname");
  EXPECT_EQ(describe(composite("^1", BpDataValue(x, "\x80z", 2))).text, "\xEF\xBF\xBDz");
  EXPECT_EQ(describe(text("gr\xC3\xBC\xC3\x9F")).text, "grüß");
}

TEST_F(Labels, LabelsAreCopied) {
  begin();
  BpProcedure procedure("Proportions", 10);
  BpDimension& rows = dimensionAt(pivot(procedure, "T"), text("Rows"), 0);
  const VarIndex x = data.addNumber("x");
  {
    const BpComposite gone = composite("^1 = ^2", BpVariable(x, 2), BpDataValue(x, 1.0, 2));
    rows.Category(gone).Cell(count(1));
  }
  EXPECT_EQ(treeText(finish().tables[0]->dimensions()[0]), "x = 1");
}

/// Texts after labels that read alike were told apart.
std::vector<std::string> distinguished(std::vector<std::pair<std::string, std::string>> labels) {
  std::vector<LabelData> data(labels.size());
  std::vector<LabelData*> pointers;
  for (size_t i = 0; i < labels.size(); ++i) {
    data[i].text = labels[i].first;
    data[i].owner = labels[i].second;
    pointers.push_back(&data[i]);
  }
  distinguish(pointers);
  std::vector<std::string> texts;
  for (const LabelData& label : data) texts.push_back(label.text);
  return texts;
}

using Texts = std::vector<std::string>;

TEST(Distinguish, LeavesDifferentLabelsAlone) {
  EXPECT_EQ(distinguished({{"a", "v"}, {"b", "v"}}), (Texts{"a", "b"}));
}

TEST(Distinguish, AddsTheVariablesName) {
  EXPECT_EQ(distinguished({{"Age = 1", "v1"}, {"Age = 1", "v2"}, {"Sex = 1", "v3"}}),
            (Texts{"Age = 1 [v1]", "Age = 1 [v2]", "Sex = 1"}));
  EXPECT_EQ(distinguished({{"Variables", ""}, {"Variables", "arm"}}),
            (Texts{"Variables", "Variables [arm]"}));
}

TEST(Distinguish, AddsANumberWhereNamesDoNotHelp) {
  EXPECT_EQ(distinguished({{"x = Yes", "x"}, {"x = Yes", "x"}, {"x = Yes", "x"}}),
            (Texts{"x = Yes [x]", "x = Yes [x] (2)", "x = Yes [x] (3)"}));
  EXPECT_EQ(distinguished({{"a", ""}, {"a", ""}}), (Texts{"a", "a (2)"}));
}

TEST(Distinguish, NeverMakesANewClash) {
  const Texts texts =
      distinguished({{"a", ""}, {"a (2)", ""}, {"a", ""}, {"a [v]", ""}, {"a", "v"}});
  for (size_t i = 0; i < texts.size(); ++i) {
    for (size_t j = 0; j < i; ++j) EXPECT_NE(texts[i], texts[j]);
  }
}

}  // namespace
}  // namespace workbench
