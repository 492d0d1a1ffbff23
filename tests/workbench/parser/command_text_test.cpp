// How a text is cut into commands and tokens.
#include "workbench/parser/command_text.h"

#include <gtest/gtest.h>

#include <clocale>

#include "tests/workbench/parser/test_grammar.h"

namespace parser_tests {
namespace {

using workbench::CommandTokens;
using workbench::splitCommands;
using workbench::writtenName;

/// The sources of the commands of a text.
std::vector<std::string> sources(const std::string& text) {
  std::vector<std::string> result;
  for (const CommandTokens& command : splitCommands(text)) result.push_back(command.source());
  return result;
}

/// The tokens of a text that is one command, or what is wrong with it.
std::string tokensOf(const std::string& text) {
  const std::vector<CommandTokens> commands = splitCommands(text);
  if (commands.size() != 1) return std::to_string(commands.size()).append(" commands");
  if (const auto& problem = commands[0].problem()) {
    return std::string("problem at ").append(std::to_string(problem->position));
  }
  std::string result;
  for (const TokenInfoObj& token : commands[0].tokens()) {
    if (!result.empty()) result += ' ';
    result += tokenText(token);
  }
  return result;
}

using Texts = std::vector<std::string>;

TEST(SplitCommands, EndsACommandAtAPeriodThatEndsALineOrAtTheEnd) {
  EXPECT_EQ(sources("A b.\nC d.\n"), (Texts{"A b.", "C d."}));
  EXPECT_EQ(sources("A b.\nC d"), (Texts{"A b.", "C d"}));
  EXPECT_EQ(sources("A b.  \t\r\nC"), (Texts{"A b.", "C"}));
  EXPECT_EQ(sources("A b. # remark\nC"), (Texts{"A b.", "C"}));
  EXPECT_EQ(sources("A\n b\n."), (Texts{"A\n b\n."}));
  EXPECT_EQ(sources("A 99.\nB"), (Texts{"A 99.", "B"}));
  EXPECT_EQ(sources("A 'x.\nB"), (Texts{"A 'x.", "B"}));
}

TEST(SplitCommands, TakesNoOtherPeriodForTheEnd) {
  EXPECT_EQ(sources("A b.c 1.5 .5\nD"), (Texts{"A b.c 1.5 .5\nD"}));
  EXPECT_EQ(sources("A '.'\n'x.'\nD"), (Texts{"A '.'\n'x.'\nD"}));
  EXPECT_EQ(sources("A # remark.\nB"), (Texts{"A # remark.\nB"}));
}

TEST(SplitCommands, AnErrorDoesNotReachTheNextCommand) {
  EXPECT_EQ(sources("A % b. # 50 per cent.\nC."), (Texts{"A % b.", "C."}));
  EXPECT_EQ(sources("A % # remark.\n b.\nC."), (Texts{"A % # remark.\n b.", "C."}));
  EXPECT_EQ(sources("A 'open # x.\nC."), (Texts{"A 'open # x.", "C."}));
  EXPECT_EQ(sources("A 'open\n b.\nC."), (Texts{"A 'open\n b.", "C."}));
  EXPECT_EQ(sources("A '"), (Texts{"A '"}));
}

TEST(SplitCommands, LeavesOutWhatIsNoCommand) {
  EXPECT_EQ(sources(""), Texts{});
  EXPECT_EQ(sources(" \n\t# remark\n . \n"), Texts{});
  EXPECT_EQ(sources("# remark\n\n  A.\n# remark\n"), Texts{"A."});
  EXPECT_EQ(sources("A b # remark at the end"), Texts{"A b"});
  EXPECT_EQ(sources("\xEF\xBB\xBF"
                    "A b."),
            Texts{"A b."});  // byte order mark
}

TEST(Tokens, Numbers) {
  EXPECT_EQ(tokensOf("1 -3 +2.5E+3 .5 -.5 1e-5 007 1."),
            "#1=1 #-3=-3 #+2.5E+3=2500 #.5=0.5 "
            "#-.5=-0.5 #1e-5=0.00001 #007=7 #1=1");
  EXPECT_EQ(tokensOf("1. 2"), "#1.=1 #2=2");
  EXPECT_EQ(tokensOf("(1.)"), "`(` #1.=1 `)`");
  EXPECT_EQ(tokensOf("1./2"), "#1.=1 `/` #2=2");
  EXPECT_EQ(tokensOf("-0 -0.0 4.9e-324"), "#-0=0 #-0.0=0 #4.9e-324=5e-324");
  EXPECT_EQ(tokensOf("1e309"), "problem at 0");
  EXPECT_EQ(tokensOf("1e-999"), "problem at 0");
  EXPECT_EQ(tokensOf("a 1-2"), "problem at 2");
  EXPECT_EQ(tokensOf("a 1+2"), "problem at 2");
  EXPECT_EQ(tokensOf("a 1.2.3"), "problem at 2");
  EXPECT_EQ(tokensOf("a 0x10"), "problem at 2");
  EXPECT_EQ(tokensOf("a -"), "problem at 2");
}

TEST(Tokens, NumbersDoNotDependOnTheLocaleOfTheProcess) {
  const char* const before = std::setlocale(LC_ALL, nullptr);
  const std::string saved = before;
  // Where no locale with a decimal comma is installed, the plain one is tested again.
  for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  }
  EXPECT_EQ(tokensOf("2.5"), "#2.5=2.5");
  std::setlocale(LC_ALL, saved.c_str());
}

TEST(Tokens, Words) {
  EXPECT_EQ(tokensOf("a_1 $x @y q.1 _ \xC3\xA9"), "a_1 $x @y q.1 _ \xC3\xA9");
  EXPECT_EQ(tokensOf("e\xCC\x81"
                     "a"),
            "e\xCC\x81"
            "a");                                                               // combining accent
  EXPECT_EQ(tokensOf("\xE0\xA4\x95\xE2\x80\x8D"), "\xE0\xA4\x95\xE2\x80\x8D");  // joiner
  EXPECT_EQ(tokensOf("a#b"), "a");
  EXPECT_EQ(tokensOf("a."), "a");
  EXPECT_EQ(tokensOf("a.."), "a.");
  EXPECT_EQ(tokensOf("\xCC\x81"), "problem at 0");  // an accent without a letter
}

TEST(Tokens, ReservedWords) {
  EXPECT_EQ(tokensOf("with By TO all"), "with~31 By~34 TO~33 all~35");
  EXPECT_EQ(tokensOf("\"with\" 'by' withx"), "\"with\" \"by\" withx");
}

TEST(Tokens, Strings) {
  EXPECT_EQ(tokensOf("'a' \"b\" '' \"\""), "\"a\" \"b\" \"\" \"\"");
  EXPECT_EQ(tokensOf("'it''s' \"a\"\"b\" 'a\"b' \"a'b\""), "\"it's\" \"a\"b\" \"a\"b\" \"a'b\"");
  EXPECT_EQ(tokensOf("''''"), "\"'\"");
  EXPECT_EQ(tokensOf("a 'b"), "problem at 2");
  EXPECT_EQ(tokensOf("a 'b\n'"), "problem at 2");
  EXPECT_EQ(tokensOf("a '''"), "problem at 2");
}

TEST(Tokens, PositionsAreByteOffsetsInTheWholeText) {
  const std::vector<CommandTokens> commands = splitCommands("A.\n  \xC3\xA9 'b' 5");
  ASSERT_EQ(commands.size(), 2u);
  ASSERT_EQ(commands[1].tokens().size(), 3u);
  EXPECT_EQ(commands[1].tokens()[0].position(), 5u);
  EXPECT_EQ(commands[1].tokens()[1].position(), 8u);
  EXPECT_EQ(commands[1].tokens()[2].position(), 12u);
  EXPECT_EQ(commands[1].endPosition(), 13u);
  EXPECT_EQ(commands[0].endPosition(), 1u);
  EXPECT_EQ(&commands[0].wholeText(), &commands[1].wholeText());
}

TEST(Tokens, TextThatIsNoUtf8IsRefused) {
  EXPECT_EQ(tokensOf("a \xFF"), "problem at 2");
  EXPECT_EQ(tokensOf("a '\xFF'"), "problem at 3");
  EXPECT_EQ(tokensOf("a # \xFF remark\n b"), "problem at 4");
  EXPECT_EQ(tokensOf("a\xC3"), "problem at 1");
  EXPECT_EQ(tokensOf(std::string("a \0 b", 5)), "problem at 2");
}

TEST(Tokens, WordsAndStringsWithoutEndAreRefused) {
  EXPECT_EQ(tokensOf(std::string(65535, 'x')), std::string(65535, 'x'));
  EXPECT_EQ(tokensOf(std::string(65536, 'x')), "problem at 0");
  EXPECT_EQ(tokensOf('"' + std::string(65536, 'x') + '"'), "problem at 0");
}

TEST(Tokens, UpperCaseReachesEveryScript) {
  const TokenInfoObj token(TokenInfoObj::Kind::kWord,
                           "stra\xC3\x9F"
                           "e\xCE\xB1",
                           0.0, 0, 0);
  EXPECT_EQ(token.getUpText(), "STRASSE\xCE\x91");
}

TEST(WrittenName, QuotesWhatIsNoIdentifier) {
  EXPECT_EQ(writtenName("age"), "age");
  EXPECT_EQ(writtenName("Gr\xC3\xB6\xC3\x9F"
                        "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
  EXPECT_EQ(writtenName("Smoker status"), "\"Smoker status\"");
  EXPECT_EQ(writtenName("with"), "\"with\"");
  EXPECT_EQ(writtenName("3rd"), "\"3rd\"");
  EXPECT_EQ(writtenName("5"), "\"5\"");
  EXPECT_EQ(writtenName("age."), "\"age.\"");
  EXPECT_EQ(writtenName("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(writtenName(""), "\"\"");
}

}  // namespace
}  // namespace parser_tests
