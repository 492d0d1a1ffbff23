/// Delimited text as it comes: each text with its values or with its refusal.
#include <gtest/gtest.h>

#include "tests/workbench/delimited/delimited_text.h"

namespace workbench {
namespace {

using Columns = std::vector<std::vector<std::string>>;

struct ValueCase {
  const char* what;
  std::string text;
  Columns columns;
};

TEST(DelimitedText, IsReadWithTheseValues) {
  const std::string bom = "\xEF\xBB\xBF";
  for (const auto& [what, text, columns] : std::initializer_list<ValueCase>{
           {"plain", "a,b\n1,x\n2,y\n", {{"number", "1", "2"}, {"text", "[x]", "[y]"}}},
           {"no last line end", "a,b\n1,x", {{"number", "1"}, {"text", "[x]"}}},
           {"empty last field", "a,b\n1,", {{"number", "1"}, {"number", "."}}},
           {"mark", bom + "a,b\n1,2\n", {{"number", "1"}, {"number", "2"}}},
           {"mark before a quote", bom + "\"a\",b\n1,2\n", {{"number", "1"}, {"number", "2"}}},
           {"CRLF", "a,b\r\n1,x\r\n2,y\r\n", {{"number", "1", "2"}, {"text", "[x]", "[y]"}}},
           {"CR", "a,b\r1,x\r2,y", {{"number", "1", "2"}, {"text", "[x]", "[y]"}}},
           {"mixed",
            "a,b\r1,x\n2,y\r\n3,z",
            {{"number", "1", "2", "3"}, {"text", "[x]", "[y]", "[z]"}}},
           {"blank lines", "\n \na\n\n1\n  \t\n2\n\n", {{"number", "1", "2"}}},
           {"blank line of many columns",
            "a,b\n\n1,2\n  \n3,4\n",
            {{"number", "1", "3"}, {"number", "2", "4"}}},
           {"quoted blank of one column", "a\n\"\"\n1\n\" \"\n", {{"number", ".", "1", "."}}},
           {"delimiter alone", "a,b\n,\n1,2\n", {{"number", ".", "1"}, {"number", ".", "2"}}},
           {"tab is a record", "a\tb\n\t\n1\t2\n", {{"number", ".", "1"}, {"number", ".", "2"}}},
           {"quoted delimiter", "a,b\n\"1,5\",2\n", {{"text", "[1,5]"}, {"number", "2"}}},
           {"quoted line ends",
            "a,b\n\"x\ny\",2\n\"x\r\n\ry\",3\n",
            {{"text", "[x\ny]", "[x\r\n\ry]"}, {"number", "2", "3"}}},
           {"doubled quotes",
            "a,b\n\"say \"\"hi\"\"\",2\n\"\"\"\",3\n",
            {{"text", "[say \"hi\"]", "[\"]"}, {"number", "2", "3"}}},
           {"quote in a field",
            "a,b\n5\" pipe,2\nx\"\"y,3\n",
            {{"text", "[5\" pipe]", "[x\"\"y]"}, {"number", "2", "3"}}},
           {"blanks around quotes", "a,b\n  \"x\" \t,2\n", {{"text", "[x]"}, {"number", "2"}}},
           {"blanks around fields", "a,b\n 1\t,  x y \n", {{"number", "1"}, {"text", "[x y]"}}},
           {"blanks in quotes",
            "a,b\n\" 5\",\"x  \"\n\"5 \",\"x\t\"\n",
            {{"text", "[ 5]", "[5]"}, {"text", "[x]", "[x\t]"}}},
           {"quoted numbers",
            "a,b\n\"5\",\"1e2\"\n6,7\n",
            {{"number", "5", "6"}, {"number", "100", "7"}}},
           {"blanks around names", "  a , \" b \"\n1,2\n", {{"number", "1"}, {"number", "2"}}},
           {"names over lines", "\"a\nx\",b\n1,2\n", {{"number", "1"}, {"number", "2"}}},
           {"no cases", "a,b\n", {{"number"}, {"number"}}},
           {"no cases and no line end", "a,b", {{"number"}, {"number"}}},
           {"one column", "a\n1\n2", {{"number", "1", "2"}}},
           {"semicolon", "weight, kg;smoker\n15;2\n", {{"number", "15"}, {"number", "2"}}},
           {"bar", "a|b\n1|2\n", {{"number", "1"}, {"number", "2"}}},
           {"NA",
            "a,b\nNA,NA\n1,x\n\"NA \",\"\"\n",
            {{"number", ".", "1", "."}, {"text", "[NA]", "[x]", "."}}},
           {"nan", "a,b\nnan,nan\n1,x\n", {{"number", ".", "1"}, {"text", "[nan]", "[x]"}}},
           {"booleans", "a\nTRUE\nfalse\n\n", {{"boolean", "1", "0"}}},
           {"one and true", "a\nTRUE\n1\n", {{"text", "[TRUE]", "[1]"}}},
           {"spellings of one number", "a\n1\n1.0\n1e0\n+1\n", {{"number", "1", "1", "1", "1"}}},
           {"spellings of one text", "a\nx\n\"x \"\n x \n", {{"text", "[x]", "[x]", "[x]"}}},
           {"beyond 2^53",
            "a\n9007199254740992\n9007199254740993\n",
            {{"text", "[9007199254740992]", "[9007199254740993]"}}},
           {"leading zero", "a\n1234\n01234\n", {{"text", "[1234]", "[01234]"}}},
           {"zones",
            "a\n1970-01-01T00:00Z\n1970-01-01 01:00+01\n",
            {{"date and time with zone", "0", "0"}}},
       }) {
    EXPECT_EQ(columnsOfText(text), columns) << what;
  }
}

struct RefusalCase {
  const char* what;
  std::string text;
  const char* place;
  const char* reason;
};

TEST(DelimitedText, IsRefusedWithItsLine) {
  for (const auto& [what, text, place, reason] : std::initializer_list<RefusalCase>{
           {"empty", "", ": ", "empty"},
           {"blank lines only", "\n \n", ": ", "empty"},
           {"too few fields", "a,b\n1,2\n\n3\n", ", line 4: ", "1 field where the header has 2"},
           {"too many fields", "a,b\n1,2\n3,4,5\n",
            ", line 3: ", "3 fields where the header has 2"},
           {"unclosed quote", "a,b\n1,2\n\"3\n4,5\n", ", line 3: ", "never closed"},
           {"unclosed in the header", "\"a,b\n1,2\n", ", line 1: ", "never closed"},
           {"text after a quote", "a,b\n\"x\"y,2\n", ", line 2: ", "after the closing"},
           {"quote after a quote", "a,b\n\"x\" \"y\",2\n", ", line 2: ", "after the closing"},
           {"lines in quotes count", "a,b\n\"x\n\r\ny\r\",2\n3\n", ", line 6: ", "1 field"},
           {"CR counts", "a,b\r1,2\r3\r", ", line 3: ", "1 field"},
           {"NUL", std::string("a,b\n1,2\n3,\0\n", 12), ", line 3: ", "--encoding"},
           {"NUL in the header", std::string("a,\0\n1,2\n", 8), ", line 1: ", "--encoding"},
           {"NUL in quotes", std::string("a,b\n\"x\n\0\",2\n", 12), ", line 3: ", "--encoding"},
           {"not UTF-8", "a,b\n1,2\n3,caf\xE9\n", ", line 3: ", "--encoding"},
           {"not UTF-8 in a name", "caf\xE9,b\n1,2\n", ", line 1: ", "--encoding"},
           {"cut character", "a,b\n1,\xC3", ", line 2: ", "--encoding"},
           {"UTF-16",
            std::string("\xFF\xFE"
                        "a\0\n\0",
                        6),
            ", line 1: ", "--encoding"},
           {"equal names", "a,b,a\n1,2,3\n", ", line 1: ", "both named a"},
           {"names that differ in case", "\nä,b,Ä\n1,2,3\n", ", line 2: ", "case of letters"},
           {"too many columns", "\n" + std::string(1'000'000, ',') + "\n",
            ", line 2: ", "the header has 1000001 columns; up to 1000000"},
           {"overflow", "a,b\n1,2\n-1e999,4\n",
            ", line 3, column a: ", "-1e999 is beyond the range"},
       }) {
    const std::string message = refusalOf(text);
    EXPECT_EQ(message.rfind(place, 0), 0U) << what << message;
    EXPECT_NE(message.find(reason), std::string::npos) << what << message;
  }
}

TEST(DelimitedText, ShowsEightyCharactersOfABadValue) {
  const std::string digits(100, '9');
  const std::string message = refusalOf("a\n" + digits + ".5e300\n");
  EXPECT_NE(message.find(std::string(80, '9') + "... is beyond"), std::string::npos) << message;
}

TEST(DelimitedText, ColumnsWithoutANameCannotBeNamed) {
  const TextFile file("a,,b,\n1,2,3,4\n");
  DelimitedOptions options;
  options.parts = {{file.path(), "FILE", {}}};
  EXPECT_EQ(DelimitedData(options).names(), (std::vector<std::string>{"a", "", "b", ""}));
}

struct DelimiterCase {
  std::string text;
  char delimiter;
};

TEST(Delimiters, AreFoundFromTheHeaderAndTheFirstHundredRecords) {
  std::string late = "a,b;c\n";
  for (int i = 0; i < 100; ++i) late += "1;2\n";
  const std::string tooLate = late + "1,2,3;4\n";
  std::string hundredth = "a,b;c\n";
  for (int i = 0; i < 99; ++i) hundredth += "1,2;3\n\n";
  hundredth += "4;5\n";
  const std::string early = "a,b;c\n1,2;3\n4;5\n";
  for (const auto& [text, delimiter] : std::initializer_list<DelimiterCase>{
           {"a,b\n1,2\n", ','},
           {"a;b\n1;2\n", ';'},
           {"a\tb\n1\t2\n", '\t'},
           {"a|b\n1|2\n", '|'},
           {"a,b;c;d\n1,2;3;4\n", ';'},
           {"a,b;c\n1,2;3\n", ','},
           {"weight, kg;smoker\n60;1\n", ';'},
           {"a;b,c\n1\n", ','},
           {"a;b;c,d\n1\n", ';'},
           {"a\n1;2\n", ','},
           {late, ';'},
           {tooLate, ';'},
           {early, ';'},
           {hundredth, ';'},
       }) {
    const TextFile file(text);
    DelimitedOptions options;
    options.parts = {{file.path(), "FILE", {}}};
    EXPECT_EQ(DelimitedData(options).delimiter(), delimiter) << text.substr(0, 40);
  }
}

TEST(Delimiters, AreNeverTheDecimalSign) {
  ReadAs comma;
  comma.options.rules.decimal = ',';
  EXPECT_EQ(columnsOfText("a;b\n1,5;x\n", comma), (Columns{{"number", "1.5"}, {"text", "[x]"}}));
  EXPECT_EQ(columnsOfText("a\n1,5\n", comma), (Columns{{"number", "1.5"}}));
  comma.options.delimiter = ',';
  EXPECT_NE(columnsOfText("a,b\n1,2\n", comma).front().front().find("--decimal"),
            std::string::npos);
}

TEST(Delimiters, AreTakenAsGiven) {
  ReadAs colon;
  colon.options.delimiter = ':';
  EXPECT_EQ(columnsOfText("a:b,c\n1:2\n", colon), (Columns{{"number", "1"}, {"number", "2"}}));
}

TEST(MissingTexts, GivenOnesAreMissingInTextsToo) {
  ReadAs given;
  given.options.rules.missingTexts = {"-9", "x"};
  given.options.rules.missingGiven = true;
  EXPECT_EQ(columnsOfText("a,b\n-9,x\n\"-9 \",y\n1,NA\n", given),
            (Columns{{"number", ".", ".", "1"}, {"text", ".", "[y]", "[NA]"}}));
}

TEST(DeclaredColumns, AreReadAsTheirTypeOrRefused) {
  const auto declared = [](DeclaredType type) {
    ReadAs how;
    how.request.columns = {{0, type, {}}};
    return how;
  };
  EXPECT_EQ(columnsOfText("a\n01\n1.50\n", declared(DeclaredType::kString)),
            (Columns{{"text", "[01]", "[1.50]"}}));
  EXPECT_EQ(columnsOfText("a\n1e3\n2.0\n", declared(DeclaredType::kInteger)),
            (Columns{{"number", "1000", "2"}}));
  EXPECT_EQ(columnsOfText("a\n0\ntrue\n", declared(DeclaredType::kBoolean)),
            (Columns{{"boolean", "0", "1"}}));
  EXPECT_EQ(refusalOf("a\n5\n\n1.5\n05\n", declared(DeclaredType::kInteger))
                .rfind(", line 4, column a: 1.5 is not a whole number. ", 0),
            0U);
  EXPECT_EQ(refusalOf("a\n5\n05\n", declared(DeclaredType::kNumber))
                .rfind(", line 3, column a: 05 is not a number. ", 0),
            0U);
}

}  // namespace
}  // namespace workbench
