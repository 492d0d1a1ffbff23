/// What a recording host answers: the active data set, the command, and everything that goes wrong.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/constants.h"

namespace recording {

using Value = std::variant<double, std::string>;

struct ScriptVariable {
  std::string name;
  std::string label;
  int32_t width = 0;   ///< 0: numeric
  int formatType = 0;  ///< of the print format; strings always have 1
  std::vector<double> missingNumbers;
  double missingLow = 1.0;
  double missingHigh = 0.0;
  std::vector<std::string> missingStrings;
  std::vector<std::pair<double, std::string>> numberLabels;
  std::vector<std::pair<std::string, std::string>> stringLabels;
};

/// One step of the case stream. Split groups end exactly where an end mark stands.
struct ScriptRow {
  enum class Kind { kCase, kEndMark, kEmptyChunk };
  Kind kind = Kind::kCase;
  std::vector<Value> values;  ///< one per variable
};

/// Overrides what an operation answers. `value` is the answer as the transcript shows it ("false",
/// "null", "missing", "-1"), or "error" for a distribution function that fails with its error flag.
struct ScriptAnswer {
  std::string operation;   ///< "Class.operation" or a free function
  int64_t occurrence = 1;  ///< the k-th call of that operation in the run; 0: every call
  std::string value;
};

/// Something that goes wrong at the k-th call of the run, at the k-th call of an operation, or when
/// the k-th case (counted over both passes) would be read.
struct ScriptFault {
  enum class What { kFatalError, kBadAlloc, kRuntimeError };
  enum class At { kCall, kOperation, kCase };
  What what = What::kFatalError;
  At at = At::kCall;
  std::string operation;
  int64_t k = 1;
};

struct Script {
  std::vector<ScriptVariable> variables;
  std::vector<ScriptRow> rows;
  std::vector<VarIndex> split;  ///< outermost first
  VarIndex weight = -1;
  bool separateSplitLayout = false;
  int64_t chunkSize = 1024;
  std::string command;
  std::vector<ScriptAnswer> answers;
  std::vector<ScriptFault> faults;

  // Shorthands for tests written in code.
  VarIndex addNumeric(const std::string& name, const std::string& label = "");
  VarIndex addString(const std::string& name, int32_t width, const std::string& label = "");
  void addCase(std::vector<Value> values, int times = 1);
  void addEndMark() { rows.push_back({ScriptRow::Kind::kEndMark, {}}); }
  /// The index of a variable, whatever the case of its (ASCII) letters; an exact match wins.
  /// Negative when there is none.
  VarIndex find(std::string_view name) const;
};

}  // namespace recording
