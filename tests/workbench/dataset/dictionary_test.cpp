#include "workbench/dataset/dictionary.h"

#include <gtest/gtest.h>

#include "tests/workbench/dataset/data_folder.h"

namespace workbench {
namespace {

using testing::casesOf;
using testing::DataFolder;
using testing::dataOptions;
using testing::refusal;
using Lines = std::vector<std::string>;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Dictionary, LiesBesideTheData) {
  const DataFolder folder;
  folder.write("a.schema.json", R"({"fields":[{"name":"x","title":"The x"}]})");
  folder.write("other.json", R"({"fields":[{"name":"x","title":"Another"}]})");
  DataOptions options = dataOptions(folder.write("a.csv", "x\n1\n"));
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x");
  EXPECT_EQ(openDataset(options)->declaration(0).shownName(), "The x");
  options.schema = folder.path("other.json");
  EXPECT_EQ(openDataset(options)->declaration(0).label, "Another");
  options = dataOptions(folder.make("a.csv.gz", "COPY (SELECT 1 AS x) TO FILE"));
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x");
  options = dataOptions(folder.make("a.parquet", "COPY (SELECT 1 AS x) TO FILE"));
  EXPECT_EQ(openDataset(options)->declaration(0).label, "The x");
}

TEST(Dictionary, GivesLabelsAndMissingValues) {
  const DataFolder folder;
  folder.write("a.schema.json", R"({
    "missingValues": ["", {"value": "-1", "label": "refused"}],
    "fields": [
      {"name": "n", "type": "integer", "categories": [{"value": 1, "label": "one"}, {"value": "2", "label": "two"}, 3]},
      {"name": "s", "type": "string", "categories": ["p", {"value": "q", "label": "Q"}], "missingValues": ["NA", "-"]},
      {"name": "b", "type": "boolean", "categories": [{"value": true, "label": "ja"}, {"value": false, "label": "nein"}]},
      {"name": "d", "type": "date", "missingValues": ["1900-01-01", "99"], "categories": [{"value": "2026-01-31", "label": "day"}]},
      {"name": "plain"}]})");
  const auto data = openDataset(
      dataOptions(folder.write("a.csv",
                               "n,s,b,d,plain\n1,q,true,2026-01-31,001\n-1,NA,false,1900-01-01,-1\n"
                               ",,1,99,2\n")));
  EXPECT_EQ(casesOf(*data),
            (Lines{"1|q |1|2026-01-31|001|1", "-1|NA|0|1900-01-01|-1 |1", ".|  |1|.|2  |1"}));
  const Variable& n = data->declaration(0);
  EXPECT_EQ(*n.findLabel(1.0), "one");
  EXPECT_EQ(*n.findLabel(2.0), "two");
  EXPECT_EQ(n.findLabel(3.0), nullptr);
  EXPECT_EQ(n.missingNumbers, (std::vector<double>{-1}));
  const Variable& s = data->declaration(1);
  EXPECT_EQ(*s.findLabel("q"), "Q");
  EXPECT_EQ(s.missingStrings, (Lines{"NA", "-"}));
  EXPECT_EQ(*data->declaration(2).findLabel(1.0), "ja");
  EXPECT_EQ(*data->declaration(3).findLabel(1769817600.0), "day");
  EXPECT_EQ(data->declaration(3).missingNumbers, (std::vector<double>{-2208988800.0, 99}));
  EXPECT_EQ(data->declaration(4).missingStrings, (Lines{"-1"})) << "for all; 001 is a text";
}

TEST(Dictionary, ForcesTypes) {
  const DataFolder folder;
  folder.write("a.schema.json",
               R"({"fields":[{"name":"code","type":"string"},{"name":"y","type":"year"},
    {"name":"b","type":"boolean"},{"name":"t","type":"datetime"},{"name":"any","type":"any"}]})");
  const auto data = openDataset(dataOptions(
      folder.write("a.csv", "code,y,b,t,any\n001,2026,1,2026-01-31T00:00,5\n02,2025,FALSE,,6\n")));
  EXPECT_EQ(casesOf(*data), (Lines{"001|2026|1|2026-01-31 00:00:00|5|1", "02 |2025|0|.|6|1"}));
}

TEST(Dictionary, TextsForMissingNumbersAreRead) {
  const DataFolder folder;
  folder.write("a.schema.json",
               R"({"fields":[{"name":"typed","type":"number","missingValues":["NA","9"]},
                             {"name":"free","missingValues":["NA", "n/a"]},{"name":"other"}]})");
  const auto data = openDataset(
      dataOptions(folder.write("a.csv", "typed,free,other\n1,2,NA\nNA,n/a,1\n9,NA,2\n")));
  EXPECT_EQ(casesOf(*data), (Lines{"1|2|.|1", ".|.|1|1", "9|.|2|1"}));
  EXPECT_EQ(data->declaration(0).missingNumbers, (std::vector<double>{9}));
}

TEST(Dictionary, TypesOfTypedSources) {
  const DataFolder folder;
  const std::string path = folder.make("a.parquet",
                                       "COPY (SELECT 7 AS i, '5' AS s, DATE '2026-01-31' AS d, "
                                       "TIMESTAMP '2026-01-31 12:00:00' AS t) TO FILE");
  folder.write(
      "a.schema.json",
      R"({"fields":[{"name":"i","type":"string"},{"name":"s","type":"number"},{"name":"d","type":"datetime"}]})");
  EXPECT_EQ(casesOf(path), (Lines{"7|5|2026-01-31 00:00:00|2026-01-31 12:00:00|1"}));
  folder.write("a.schema.json", R"({"fields":[{"name":"i","type":"date"}]})");
  EXPECT_TRUE(
      has(refusal(path), "a.schema.json: /fields/0/type: the values of 'i' are of another type"))
      << refusal(path);
}

struct Misfit {
  const char* type;
  const char* bad;
};
/// Names a misfit in the list of tests.
void PrintTo(const Misfit& misfit, std::ostream* out) {
  *out << misfit.bad << " as " << misfit.type;
}

class ValuesThatDoNotFit : public ::testing::TestWithParam<Misfit> {};

TEST_P(ValuesThatDoNotFit, AreErrorsWithTheirPlace) {
  const DataFolder folder;
  folder.write("a.schema.json",
               std::string(R"({"fields":[{"name":"x","type":")") + GetParam().type + "\"}]}");
  const auto data = openDataset(
      dataOptions(folder.write("a.csv", std::string("x,y\n,1\n") + GetParam().bad + ",2\n")));
  const std::string failure = casesOf(*data).back();
  EXPECT_TRUE(has(failure, "failed: ")) << failure;
  EXPECT_TRUE(has(failure, GetParam().bad)) << failure;
  EXPECT_TRUE(has(failure, "x")) << failure;
  EXPECT_TRUE(has(failure, "dictionary")) << failure;
}

INSTANTIATE_TEST_SUITE_P(Types, ValuesThatDoNotFit,
                         ::testing::Values(Misfit{"number", "abc"}, Misfit{"integer", "1.5"},
                                           Misfit{"integer", "abc"}, Misfit{"boolean", "yes"},
                                           Misfit{"date", "31/12/2020"}, Misfit{"time", "noon"},
                                           Misfit{"datetime", "yesterday"}));

struct BadDictionary {
  const char* text;
  const char* message;
};
/// Names a dictionary in the list of tests.
void PrintTo(const BadDictionary& dictionary, std::ostream* out) { *out << dictionary.message; }

class BadDictionaries : public ::testing::TestWithParam<BadDictionary> {};

TEST_P(BadDictionaries, AreRefusedWithTheirPlace) {
  const DataFolder folder;
  folder.write("a.schema.json", GetParam().text);
  const std::string message = refusal(folder.write("a.csv", "x,y\n1,a\n"));
  EXPECT_TRUE(has(message, "a.schema.json")) << message;
  EXPECT_TRUE(has(message, GetParam().message)) << message;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BadDictionaries,
    ::testing::Values(
        BadDictionary{"", ", line 1: this is not JSON"},
        BadDictionary{"{\n\"fields\": [\n}", ", line 3: this is not JSON"},
        BadDictionary{R"({"fields":[{"name":"x","missingValues":[1e999]}]})",
                      ": a number is too large"},
        BadDictionary{"[]", ": /: a Table Schema"}, BadDictionary{"{}", ": /: there are no fields"},
        BadDictionary{R"({"fields":{}})", ": /fields: a list is expected"},
        BadDictionary{R"({"fields":[1]})", ": /fields/0: an object is expected"},
        BadDictionary{R"({"fields":[{}]})", ": /fields/0: the field has no name"},
        BadDictionary{R"({"fields":[{"name":1}]})", ": /fields/0/name: a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x"},{"name":"x"}]})",
                      "/fields/1/name: the field 'x' is listed twice"},
        BadDictionary{R"({"fields":[{"name":"x","title":"a","type":"integer","title":"b"}]})",
                      "/fields/0/title: the key stands twice in its object"},
        BadDictionary{R"({"fields":[{"name":"x"},{"name":"y","categories":[1,{"value":2,)"
                      R"("label":"a","label":"b"}]}]})",
                      "/fields/1/categories/1/label: the key stands twice in its object"},
        BadDictionary{R"({"fields":[{"name":"x"}],"fields":[]})", "/fields: the key stands twice"},
        BadDictionary{R"({"fields":[{"name":"y","type":"string","categoriesOrdered":true,)"
                      R"("categories":["a",{"value":"b","label":"B"},"a "]}]})",
                      "/fields/0/categories/2: the ordered category 'a ' is listed twice"},
        BadDictionary{R"({"fields":[{"name":"y","categoriesOrdered":true,)"
                      R"("categories":["a","b"]}]})",
                      "/fields/0/categoriesOrdered: ordered categories that are texts need "},
        BadDictionary{R"({"fields":[{"name":"y","type":"string","categoriesOrdered":true}]})",
                      "/fields/0/categoriesOrdered: ordered categories need categories"},
        BadDictionary{R"({"fields":[{"name":"x","categoriesOrdered":1}]})",
                      "/fields/0/categoriesOrdered: true or false is expected"},
        BadDictionary{R"({"fields":[{"name":"x","format":"%d.%m.%Y"}]})",
                      "/fields/0/format: format is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","decimalChar":","}]})",
                      "/fields/0/decimalChar: decimalChar is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","groupChar":"."}]})",
                      "/fields/0/groupChar: groupChar is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","bareNumber":false}]})",
                      "/fields/0/bareNumber: bareNumber is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","trueValues":["yes"]}]})",
                      "/fields/0/trueValues: trueValues is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","falseValues":["no"]}]})",
                      "/fields/0/falseValues: falseValues is not supported"},
        BadDictionary{R"({"fields":[{"name":"x","title":5}]})",
                      "/fields/0/title: a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x","type":"intger"}]})",
                      "/fields/0/type: the type 'intger' is not known (did you mean 'integer'?)"},
        BadDictionary{R"({"fields":[{"name":"x","type":["integer"]}]})",
                      "/fields/0/type: a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x","categories":{}}]})",
                      "/fields/0/categories: a list is expected"},
        BadDictionary{R"({"fields":[{"name":"x","categories":[{"label":"l"}]}]})",
                      "/fields/0/categories/0: a value is expected"},
        BadDictionary{R"({"fields":[{"name":"x","categories":[{"value":1,"label":2}]}]})",
                      "/fields/0/categories/0/label: a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x","categories":[1,{"value":"abc","label":"l"}]}]})",
                      "/fields/0/categories/1/value: 'abc' is no value of 'x'"},
        BadDictionary{R"({"fields":[{"name":"x","categories":[{"value":1,"label":"l"},)"
                      R"({"value":"1.0","label":"m"}]}]})",
                      "/fields/0/categories/1/value: '1' has a label twice"},
        BadDictionary{R"({"fields":[{"name":"y","categories":[{"value":"a","label":"l"},)"
                      R"({"value":"a ","label":"m"}]}]})",
                      "/fields/0/categories/1/value: 'a' has a label twice"},
        BadDictionary{R"({"fields":[{"name":"x","categories":[null]}]})",
                      "/fields/0/categories/0: a number or a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x","missingValues":"9"}]})",
                      "/fields/0/missingValues: a list is expected"},
        BadDictionary{R"({"fields":[],"missingValues":[[]]})",
                      "/missingValues/0: a number or a text is expected"},
        BadDictionary{R"({"fields":[{"name":"x","missingValues":[{"label":"l"}]}]})",
                      "/fields/0/missingValues/0: a value is expected"}));

TEST(Dictionary, PropertiesThatChangeNothingAreAllowed) {
  const DataFolder folder;
  folder.write("a.schema.json", R"({"fields":[{"name":"x","type":"number","format":"default",)"
                                R"("decimalChar":".","groupChar":"","bareNumber":true}]})");
  EXPECT_EQ(casesOf(folder.write("a.csv", "x\n1.5\n")), (Lines{"1.5|1"}));
}

TEST(Dictionary, MayHave64MiB) {
  const DataFolder folder;
  const std::string fields = R"({"fields":[{"name":"x","title":"The x"}]})";
  const size_t most = size_t{64} << 20U;
  folder.write("a.schema.json", fields + std::string(most - fields.size(), ' '));
  const std::string path = folder.write("a.csv", "x\n1\n");
  EXPECT_EQ(openDataset(dataOptions(path))->declaration(0).label, "The x");
  folder.write("a.schema.json", fields + std::string(most - fields.size() + 1, ' '));
  EXPECT_TRUE(has(refusal(path), "a.schema.json: the dictionary is larger than 64 MiB"));
}

TEST(Dictionary, NamesVariablesInAnyCase) {
  const DataFolder folder;
  folder.write("a.schema.json", R"({"fields":[{"name":"Smoker","missingValues":["9"]},)"
                                R"({"name":"AGE","title":"Any"},{"name":"age","title":"Age"}]})");
  DataOptions options = dataOptions(folder.write("a.csv", "smoker,age\n1,5\n9,6\n"));
  const auto data = openDataset(options);
  casesOf(*data);
  EXPECT_EQ(data->declaration(0).missingNumbers, (std::vector<double>{9}));
  EXPECT_EQ(data->declaration(1).label, "Age") << "an exact match wins";
  options.schema = folder.path("a.schema.json");
  EXPECT_TRUE(has(refusal(options), "/fields/1/name: the data have no variable 'AGE'"));
  options.schema = folder.write("b.json", R"({"fields":[{"name":"SMOKER"}]})");
  EXPECT_EQ(refusal(options), "");
}

TEST(Dictionary, MayNotBeNestedWithoutEnd) {
  const DataFolder folder;
  const std::string path = folder.write("a.csv", "x\n1\n");
  const auto nested = [&](size_t depth) {
    folder.write("a.schema.json", "{\"fields\":[],\"more\":" + std::string(depth, '[') +
                                      std::string(depth, ']') + "}");
    return refusal(path);
  };
  EXPECT_EQ(nested(900), "");
  EXPECT_TRUE(has(nested(1'000'000), "a.schema.json: /: it is nested more than 1000 deep"));
}

TEST(Dictionary, WholeNumbersAreTakenAsTheyAreWritten) {
  const DataFolder folder;
  folder.write("a.schema.json", R"({"fields":[{"name":"id","missingValues":[9007199254740993]}]})");
  const auto texts =
      openDataset(dataOptions(folder.write("a.csv", "id\n9007199254740993\n9007199254740995\n")));
  casesOf(*texts);
  EXPECT_EQ(texts->declaration(0).missingStrings, (Lines{"9007199254740993"}));
  const auto numbers =
      openDataset(dataOptions(folder.write("a.csv", "id\n9007199254740992\n9007199254740993\n")));
  EXPECT_EQ(casesOf(*numbers), (Lines{"9007199254740992|1", ".|1"}))
      << "what the column cannot hold is system-missing";
  EXPECT_TRUE(numbers->declaration(0).missingNumbers.empty());
}

TEST(Dictionary, OrderedCategoriesAreNumbersWithLabels) {
  const DataFolder folder;
  folder.write("a.schema.json",
               R"({"fields":[{"name":"s","type":"string","categoriesOrdered":true,)"
               R"("categories":["low",{"value":"mid","label":"In between"},"high","none"],)"
               R"("missingValues":["",{"value":"none","label":"Not asked"},"?"]}]})");
  const auto lines = [&](const std::string& text) {
    return casesOf(folder.write("a.csv", "s,n\n" + text));
  };
  EXPECT_EQ(lines("high,1\nlow,2\nmid,3\nnone,4\n?,5\n,6\n"),
            (Lines{"3|1|1", "1|2|1", "2|3|1", "0|4|1", "-1|5|1", ".|6|1"}));
  EXPECT_TRUE(has(lines("high,1\nhigher,2\n").back(),
                  "a.csv, line 3: s: 'higher' is not among the ordered categories"));
  const auto data = openDataset(dataOptions(folder.write("a.csv", "s\nhigh\n")));
  const Variable& variable = data->declaration(0);
  EXPECT_EQ(variable.missingNumbers, (std::vector<double>{0, -1}));
  for (const auto& [code, label] : {std::pair{1.0, "low"}, std::pair{2.0, "In between"},
                                    std::pair{3.0, "high"}, std::pair{0.0, "Not asked"}}) {
    ASSERT_NE(variable.findLabel(code), nullptr) << code;
    EXPECT_EQ(*variable.findLabel(code), label);
  }
  DataOptions spilled = dataOptions(folder.write("a.csv", "s\nhigh\nlow\nlower\n"));
  spilled.memoryLimit = 0;
  EXPECT_TRUE(has(refusal(spilled), "a.csv, line 4: s: 'lower' is not among")) << refusal(spilled);
}

TEST(Dictionary, EnumerationsTakeLabelsAndMissingValues) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.makeDatabase(
      "e.db",
      "CREATE TABLE t AS SELECT unnest(['mild', 'severe', 'none', NULL])::ENUM('none', 'mild', "
      "'severe') AS e"));
  EXPECT_EQ(casesOf(options), (Lines{"2|1", "3|1", "1|1", ".|1"}));
  options.schema = folder.write(
      "s.json", R"({"fields":[{"name":"e","categories":[{"value":"mild","label":"Mild"}],)"
                R"("missingValues":[{"value":"none","label":"Never"}]}]})");
  EXPECT_EQ(casesOf(options), (Lines{"1|1", "2|1", "0|1", ".|1"}));
  const auto data = openDataset(options);
  EXPECT_EQ(*data->declaration(0).findLabel(1.0), "Mild");
  EXPECT_EQ(*data->declaration(0).findLabel(2.0), "severe");
  EXPECT_EQ(*data->declaration(0).findLabel(0.0), "Never");
}

TEST(Dictionary, TheOneNamedMustBeThere) {
  const DataFolder folder;
  DataOptions options = dataOptions(folder.write("a.csv", "x\n1\n"));
  options.schema = folder.path("none.json");
  EXPECT_TRUE(has(refusal(options),
                  "none.json: the dictionary cannot be read (No such file or directory)."));
  options.schema = folder.path(std::string(300, 'n'));
  EXPECT_TRUE(has(refusal(options), "the dictionary cannot be read (File name too long)."));
}

}  // namespace
}  // namespace workbench
