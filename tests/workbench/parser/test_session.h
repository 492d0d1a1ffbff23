/// A session with a small data set and one command, whose messages are kept.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/memory/memory_dataset.h"
#include "workbench/parser/command_text.h"
#include "workbench/session/session.h"

namespace parser_tests {

/// A message that was reported, in the form of the catalogue's English text.
struct Reported {
  bool isError;
  std::string key;
  std::vector<std::string> arguments;
};

/// The variables, in order: a, b, c (numbers), s (string of 10 bytes), "Smoker status" and "with"
/// (numbers), d (date), t (boolean with the labels no and yes), w (the weight), g (the split
/// variable), $bootstrap_split, Größe (number).
void fillDataset(workbench::MemoryDataset& dataset);

class TestSession {
 public:
  /// Opens a session on the first command of the text.
  explicit TestSession(const std::string& text);
  /// The same with a data set of the caller's.
  TestSession(const std::string& text, workbench::ActiveDataset& dataset);

  const workbench::CommandTokens& command() const { return commands_.at(0); }
  void wantOneMethod() { session_.oneMethod = true; }
  workbench::ActiveDataset& dataset() { return *session_.dataset; }
  /// What was reported since the session was opened.
  const std::vector<Reported>& messages() const;

 private:
  workbench::MemoryDataset ownDataset_;
  std::vector<workbench::CommandTokens> commands_;
  workbench::Session session_;
  std::optional<workbench::SessionScope> scope_;
};

/// A reported syntax error as a reader sees it; other messages as their key and arguments.
std::string shown(const Reported& message);

}  // namespace parser_tests
