/// What a parsed command says, in terms of the data: for the host's own use, beside the procedure's
/// reading of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/parser.h"
#include "workbench/dataset/active_dataset.h"
#include "workbench/parser/command_text.h"
#include "workbench/parser/level_reading.h"

namespace workbench {

enum class CommandDesign : uint8_t { kNone, kOneSample, kPaired, kIndependent };
enum class ValueRule : uint8_t { kFirst, kLast, kMidpoint, kCutpoint, kLevel };

/// A rule that tells the values that count, with what was written for it.
struct RuleFacts {
  ValueRule rule = ValueRule::kLast;
  std::vector<TokenInfoObj> values;  ///< of LEVEL and CUTPOINT, in the order written
  /// Of LEVEL, by the text of a value: how and where it is written.
  struct WrittenLevel {
    bool bare = false;
    bool quoted = false;
    size_t position = 0;
  };
  std::unordered_map<std::string, WrittenLevel> levels;
};

struct CommandFacts {
  CommandDesign design = CommandDesign::kNone;  ///< the last one named, should there be several
  std::vector<VarIndex> tests;                  ///< the list before WITH or BY, each variable once
  std::vector<VarIndex> second;                 ///< the list after WITH
  VarIndex grouping = -1;                       ///< after BY; negative: none
  RuleFacts success;
  RuleFacts groups{ValueRule::kLevel, {}, {}};  ///< LEVEL without values: 1 and 2
  double level = 95.0;                          ///< of the intervals, in percent
  bool includesUserMissing = false;
  bool listwise = false;
  /// The level that was refused last, with the reason.
  std::optional<SyntaxProblem> refusedLevel;

  /// Test variables, second list and grouping variable, each once.
  std::vector<VarIndex> variables() const;
  /// The variables that the rule for successes is about.
  std::vector<VarIndex> analysed() const;
};

/// Names that are not variables are passed over: refusing them is the procedure's business.
CommandFacts commandFacts(CommandSpec& parsed, const ActiveDataset& dataset);

}  // namespace workbench
