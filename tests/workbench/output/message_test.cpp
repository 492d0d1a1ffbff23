#include "host/messages.h"

#include "output_fixture.h"

namespace workbench {
namespace {

using Arguments = std::vector<std::string>;

class Messages : public OutputTest {};

TEST_F(Messages, KeysArgumentsAndTexts) {
  catalogue = Catalogue::parse(R"({"Param ^1, subcom ^2 ...": "^2: ^1 twice."})");
  begin();
  ParserMessage messages;
  messages.GenericWarning("Param ^1, subcom ^2 ...", "CITYPES", "ONESAMPLE");
  messages.GenericError("Plain ...");
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.messages.size(), 2u);
  EXPECT_EQ(done.messages[0].severity, Severity::kWarning);
  EXPECT_EQ(done.messages[0].level, 2);
  EXPECT_EQ(done.messages[0].key, "Param ^1, subcom ^2 ...");
  EXPECT_EQ(done.messages[0].arguments, (Arguments{"CITYPES", "ONESAMPLE"}));
  EXPECT_EQ(done.messages[0].text, "ONESAMPLE: CITYPES twice.");
  EXPECT_EQ(done.messages[1].severity, Severity::kError);
  EXPECT_EQ(done.messages[1].level, 3);
  EXPECT_EQ(done.messages[1].text, "Plain ...") << "the catalogue has no such key";
}

TEST_F(Messages, EveryFormOfAParserMessage) {
  begin();
  ParserMessage messages;
  messages.SetCommandName("PROPORTIONS");
  messages.SetProcedureTitle("Proportions");
  messages.GenericError("E0");
  messages.GenericError("E1 ^1", "a");
  messages.GenericError("E2 ^1 ^2", "a", "b");
  messages.GenericWarning("W0");
  messages.GenericWarning("W1 ^1", "a");
  messages.GenericWarning("W2 ^1 ^2", "a", "b");
  messages.NoSubCom();
  messages.NoTableRequested();
  messages.ParamExclAnyOther("CITYPES NONE", "ONESAMPLE");
  messages.VariableNotNumeric("arm", "BY", "INDEPENDENTSAMPLES");
  std::string shown;
  for (const DocumentMessage& message : finish().messages) {
    shown += message.severity == Severity::kError ? 'E' : 'W';
    shown += std::to_string(message.level);
    for (const std::string& argument : message.arguments) shown += " " + argument;
    shown += "; ";
  }
  EXPECT_EQ(shown,
            "E3; E3 a; E3 a b; W2; W2 a; W2 a b; E3 PROPORTIONS; W2; E3 CITYPES NONE ONESAMPLE; "
            "E3 arm BY INDEPENDENTSAMPLES; ");
}

TEST_F(Messages, TheProcedureNamesTheLevelOfItsWarnings) {
  const VarIndex x = data.addNumber("x", "The x");
  begin();
  BpError(text("Plain ..."), 2, 3);
  BpError(composite("Pair ^1 var ^2 ...", count(2), BpVariable(x, 2)), 2, 2);
  const DocumentProcedure& done = finish();
  EXPECT_EQ(done.messages[0].severity, Severity::kWarning);
  EXPECT_EQ(done.messages[0].level, 3);
  EXPECT_EQ(done.messages[1].level, 2);
  EXPECT_EQ(done.messages[1].key, "Pair ^1 var ^2 ...");
  EXPECT_EQ(done.messages[1].arguments, (Arguments{"2", "The x"}));
  EXPECT_EQ(done.messages[1].text, "Pair 2 var The x ...");
  EXPECT_FALSE(done.failed) << "warnings do not fail a procedure, whatever their level";
}

TEST_F(Messages, AnErrorFailsTheProcedure) {
  begin();
  ParserMessage().GenericError("E");
  EXPECT_TRUE(finish().failed);
}

TEST_F(Messages, ErrorsThatWereClearedDoNot) {
  begin();
  ParserMessage().GenericError("E");
  BEPesRepos::BEPesClear();
  ParserMessage().GenericWarning("W");
  BEPesRepos::BEPesCheckError();
  const DocumentProcedure& done = finish();
  EXPECT_FALSE(done.failed);
  EXPECT_EQ(done.messages.size(), 2u) << "both are listed all the same";
}

TEST_F(Messages, ErrorsAfterTheClearDoAndTablesStay) {
  begin();
  BEPesRepos::BEPesClear();
  BpProcedure procedure("Proportions", 10);
  dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a")).Cell(count(1));
  ParserMessage().GenericError("E");
  BEPesRepos::BEPesCheckError();
  const DocumentProcedure& done = finish();
  EXPECT_TRUE(done.failed);
  EXPECT_EQ(done.tables.size(), 1u);
}

TEST_F(Messages, ErrorsOfOneProcedureDoNotFailTheNext) {
  begin();
  ParserMessage().GenericError("E");
  finish();
  begin();
  EXPECT_FALSE(finish().failed);
}

TEST_F(Messages, DataThatFailedShowNoTableAndTheReason) {
  begin();
  BpProcedure procedure("Proportions", 10);
  dimensionAt(pivot(procedure, "T"), text("R"), 0).Category(text("a")).Cell(count(1));
  data.failureNow = "line 7 of data.csv is torn";
  const DocumentProcedure& done = finish();
  EXPECT_TRUE(done.failed);
  EXPECT_TRUE(done.tables.empty());
  ASSERT_EQ(done.messages.size(), 1u);
  EXPECT_EQ(done.messages[0].severity, Severity::kError);
  EXPECT_EQ(done.messages[0].arguments, (Arguments{"line 7 of data.csv is torn"}));
}

TEST_F(Messages, NotesOfTheProcedure) {
  catalogue = Catalogue::parse(R"({"Cases Used": "Cases", "used ...": "All of them."})");
  begin();
  AddNotes(4, text("Cases Used"), text("used ..."));
  AddNotes(0, text("Weights"), text("none"));
  const DocumentProcedure& done = finish();
  ASSERT_EQ(done.notes.size(), 2u);
  EXPECT_EQ(done.notes[0].section, 4);
  EXPECT_EQ(done.notes[0].label, "Cases");
  EXPECT_EQ(done.notes[0].key, "used ...");
  EXPECT_EQ(done.notes[0].value, "All of them.");
  EXPECT_EQ(done.notes[1].section, 0);
  EXPECT_EQ(done.notes[1].value, "none");
}

TEST_F(Messages, FillingsAreNotFilledAgain) {
  begin();
  report(Severity::kWarning, "Name ^1 and ^2", {"^2", "[%1:^1:]1"});
  EXPECT_EQ(finish().messages[0].text, "Name ^2 and [%1:^1:]1");
}

TEST_F(Messages, BytesThatAreNoUtf8AreReplaced) {
  begin("bad \xFF");
  report(Severity::kWarning, "Name ^1", {"\xC3("});
  const DocumentProcedure& done = finish();
  EXPECT_EQ(done.messages[0].text, "Name \xEF\xBF\xBD(");
  EXPECT_EQ(done.messages[0].arguments[0], "\xEF\xBF\xBD(");
  EXPECT_EQ(done.command, "bad \xEF\xBF\xBD");
}

TEST_F(Messages, NothingIsPutOutWhenNoProcedureRuns) {
  EXPECT_THROW(report(Severity::kWarning, "W", {}), std::logic_error);
  EXPECT_THROW(BpError(text("W"), 2, 2), std::logic_error);
  EXPECT_THROW(AddNotes(4, text("a"), text("b")), std::logic_error);
}

}  // namespace
}  // namespace workbench
