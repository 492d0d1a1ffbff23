// What a reader of a syntax error sees, in cases that a text file cannot hold.
#include "workbench/parser/syntax_error.h"

#include <gtest/gtest.h>

#include "tests/workbench/parser/test_session.h"

namespace parser_tests {
namespace {

/// What is reported for a place in a text.
std::string reportedAt(const std::string& text, size_t position) {
  TestSession session(text);
  workbench::reportSyntaxError(session.command(), {position, "Wrong.", ""});
  return shown(session.messages().at(0));
}

TEST(SyntaxError, ShowsTheLineWithoutItsLineBreak) {
  EXPECT_EQ(reportedAt("one\r\ntwo\r\nthree", 5), "2:1: Wrong.\n    two\n    ^");
  EXPECT_EQ(reportedAt("one\r\ntwo\r\nthree", 8), "2:4: Wrong.\n    two\n       ^");
  EXPECT_EQ(reportedAt("one\ntwo\nthree", 3), "1:4: Wrong.\n    one\n       ^");
  EXPECT_EQ(reportedAt("one\ntwo\nthree", 13), "3:6: Wrong.\n    three\n         ^");
}

TEST(SyntaxError, APlaceBehindTheTextIsItsEnd) {
  EXPECT_EQ(reportedAt("one", 100), "1:4: Wrong.\n    one\n       ^");
}

TEST(SyntaxError, DoesNotCountTheByteOrderMark) {
  EXPECT_EQ(reportedAt("\xEF\xBB\xBF"
                       "one",
                       4),
            "1:2: Wrong.\n    one\n     ^");
}

TEST(SyntaxError, ShowsControlCharactersAsEscapes) {
  EXPECT_EQ(reportedAt("a\x1B[2J b", 6), "1:7: Wrong.\n    a\\u001B[2J b\n               ^");
}

TEST(SyntaxError, CutsBetweenCharacters) {
  std::string text;
  for (int i = 0; i < 200; ++i) text += "\xC3\xA9";
  const std::string message = reportedAt(text, 200);
  EXPECT_EQ(message.find("\xEF\xBF\xBD"), std::string::npos) << message;
  EXPECT_NE(message.find("1:101: "), std::string::npos) << message;
}

TEST(SyntaxError, CutsBytesThatAreNoUtf8Too) {
  const std::string message = reportedAt("a" + std::string(500, '\x80'), 300);
  EXPECT_LT(message.size(), 1000u);
}

TEST(ShortQuoted, CutsLongWords) {
  EXPECT_EQ(workbench::shortQuoted("word"), "\"word\"");
  EXPECT_EQ(workbench::shortQuoted(std::string(41, 'x')), '"' + std::string(40, 'x') + "...\"");
  EXPECT_EQ(workbench::shortQuoted("a\nb"), "\"a\\nb\"");
}

}  // namespace
}  // namespace parser_tests
