// Whatever the text, parsing ends, answers, and reports at most one error.
#include <gtest/gtest.h>

#include <random>

#include "tests/workbench/parser/test_grammar.h"
#include "tests/workbench/parser/test_session.h"
#include "workbench/parser/variable_names.h"
#include "workbench/text/utf8.h"

namespace parser_tests {
namespace {

/// Runs every command of a text through all that parses it.
void parseAll(const std::string& text, const std::string& label) {
  SCOPED_TRACE(label);
  workbench::MemoryDataset dataset;
  fillDataset(dataset);
  const std::vector<workbench::CommandTokens> commands = workbench::splitCommands(text);
  for (const workbench::CommandTokens& command : commands) {
    EXPECT_FALSE(command.source().empty());
    TestSession session(command.source(), dataset);
    workbench::mentionedVariables(command, dataset);
    CommandSpec parsed;
    CommandDescriptor syntax("PROPORTIONS", "Proportions");
    describeCommand(syntax);
    ZELK_TokenSequence tokens(true);
    const bool refused = UniversalParser(tokens, parsed, syntax).getCommandSpecifications() != 0;
    ASSERT_EQ(session.messages().size(), refused ? 1u : 0u);
    if (refused) {
      EXPECT_TRUE(workbench::isUtf8(shown(session.messages()[0])));
      EXPECT_LT(shown(session.messages()[0]).size(), 2000u);
      continue;
    }
    ProcedureDataSource source;
    for (const char* name : {"ONESAMPLE", "PAIREDSAMPLES", "INDEPENDENTSAMPLES"}) {
      SubComObj* const subcommand = parsed.getSubComObj(name);
      if (subcommand == nullptr) continue;
      const size_t before = session.messages().size();
      VarSpecObj list("", name, source);
      const bool valid =
          list.ValidateVariables(subcommand->exportParamObj()->getTokenList(), kKeepRepeats);
      EXPECT_EQ(session.messages().size() - before, valid ? 0u : 1u);
    }
  }
}

std::string repeated(const std::string& part, size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  for (size_t i = 0; i < times; ++i) text += part;
  return text;
}

TEST(Robustness, RandomBytes) {
  std::mt19937 random(20260131);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (int i = 0; i < 60; ++i) text += static_cast<char>(byte(random));
    parseAll(text, "round " + std::to_string(round));
  }
}

TEST(Robustness, RandomTokens) {
  const std::vector<std::string> parts = {"PROPORTIONS",
                                          "/ONESAMPLE",
                                          "/SUCCESS",
                                          "/PAIREDSAMPLES",
                                          "/",
                                          "a",
                                          "b",
                                          "TO",
                                          "ALL",
                                          "WITH",
                                          "BY",
                                          "(",
                                          ")",
                                          "=",
                                          "TESTVAL=",
                                          "VALUE=",
                                          "LEVEL",
                                          "LEVEL(",
                                          "1",
                                          "-1.5",
                                          "'x'",
                                          "\"",
                                          "'",
                                          ",",
                                          ".",
                                          ".\n",
                                          "\n",
                                          "#",
                                          "CITYPES=",
                                          "WALD",
                                          "TESTTYPES=",
                                          "NONE",
                                          "%",
                                          "\xC3\xA9",
                                          "\xFF",
                                          "$bootstrap_split",
                                          "\"Smoker status\""};
  std::mt19937 random(7);
  std::uniform_int_distribution<size_t> choice(0, parts.size() - 1);
  for (int round = 0; round < 5000; ++round) {
    std::string text = "PROPORTIONS /ONESAMPLE ";
    for (int i = 0; i < 12; ++i) text += parts[choice(random)] + ' ';
    parseAll(text, text);
  }
}

TEST(Robustness, EveryStartOfAGoodCommand) {
  const std::string command =
      "PROPORTIONS /PAIREDSAMPLES a TO c WITH \"Smoker status\" (PAIRED) TESTTYPES=MIDP, MCNEMAR\n"
      " /SUCCESS VALUE=LEVEL(1 'x' -2.5e-3) # remark\n /CRITERIA CILEVEL=99.";
  for (size_t length = 0; length <= command.size(); ++length) {
    parseAll(command.substr(0, length), std::to_string(length));
  }
}

TEST(Robustness, AMegabyteOfOneThing) {
  constexpr size_t kSize = 1'000'000;
  for (const char* part : {"(", ")", "'", "\"", "/", "=", ",", ".", "#", "\n", " ", "a", "1", "-",
                           "\\", "%", "\xFF", "\xC3\xA9"}) {
    parseAll("PROPORTIONS /ONESAMPLE " + repeated(part, kSize / 2), part);
    parseAll("PROPORTIONS /SUCCESS VALUE=LEVEL(" + repeated(part, kSize / 2), part);
  }
  for (const char* part :
       {"a ", "1 ", "a. ", "( ", "x=", "'' ", "/SUCCESS ", "ALL ", "a TO d ", "PROPORTIONS\n"}) {
    parseAll("PROPORTIONS /ONESAMPLE " + repeated(part, kSize / 10), part);
    parseAll("PROPORTIONS /SUCCESS VALUE=LEVEL(" + repeated(part, kSize / 10), part);
  }
}

TEST(Robustness, ThousandsOfCommandsShareTheirText) {
  const std::string text = repeated("PROPORTIONS /CRITERIA CILEVEL=90.\n", 30'000);
  const std::vector<workbench::CommandTokens> commands = workbench::splitCommands(text);
  EXPECT_EQ(commands.size(), 30'000u);
}

}  // namespace
}  // namespace parser_tests
