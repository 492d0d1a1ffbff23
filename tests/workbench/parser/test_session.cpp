#include "tests/workbench/parser/test_session.h"

#include "workbench/output/report.h"

namespace {

std::vector<parser_tests::Reported> reported;

}  // namespace

// The tests have no output document: messages are kept here.
void workbench::report(Severity severity, const std::string& key,
                       const std::vector<std::string>& arguments) {
  reported.push_back({severity == Severity::kError, key, arguments});
}

namespace parser_tests {

void fillDataset(workbench::MemoryDataset& dataset) {
  const std::vector<double> numbers = {0, 1};
  for (const char* name : {"a", "b", "c"}) dataset.addNumbers(name, numbers);
  dataset.addStrings("s", {"no", "yes, often"});
  dataset.addNumbers("Smoker status", numbers);
  dataset.addNumbers("with", numbers);
  workbench::Variable date;
  date.name = "d";
  date.kind = workbench::ValueKind::kDate;
  dataset.addNumbers(date, numbers);
  workbench::Variable truth;
  truth.name = "t";
  truth.kind = workbench::ValueKind::kBoolean;
  truth.numberLabels = {{0, "no"}, {1, "yes"}};
  dataset.addNumbers(truth, numbers);
  dataset.setWeight(dataset.addNumbers("w", numbers));
  dataset.setSplit({dataset.addNumbers("g", numbers)});
  dataset.addNumbers("$bootstrap_split", numbers);
  dataset.addNumbers(
      "Gr\xC3\xB6\xC3\x9F"
      "e",
      numbers);
}

TestSession::TestSession(const std::string& text) : TestSession(text, ownDataset_) {
  fillDataset(ownDataset_);
}

TestSession::TestSession(const std::string& text, workbench::ActiveDataset& dataset)
    : commands_(workbench::splitCommands(text)) {
  reported.clear();
  session_.dataset = &dataset;
  if (!commands_.empty()) session_.command = &commands_.front();
  scope_.emplace(session_);
}

const std::vector<Reported>& TestSession::messages() const { return reported; }

std::string shown(const Reported& message) {
  const std::vector<std::string>& with = message.arguments;
  std::string text = message.isError ? "" : "warning ";
  if (message.key == "Syntax error ^1 ^2 ..." && with.size() == 6) {
    return text + with[0] + ':' + with[1] + ": " + with[4] + "\n    " + with[2] + "\n    " +
           with[3] + with[5];
  }
  text += message.key;
  for (const std::string& argument : with) text += " | " + argument;
  return text;
}

}  // namespace parser_tests
