/// How a level of a command becomes a value of a variable.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// How a level was written, as far as that makes a difference.
enum class LevelForm : uint8_t { kBare, kQuoted };

/// What a level means to a variable, or why it means nothing to it.
struct LevelReading {
  /// A number (dates and times in seconds), or a text without trailing blanks.
  std::optional<SplitValue> value = {};
  std::string problem = {};     ///< sentences; empty when there is a value
  std::string suggestion = {};  ///< the nearest label, as a command has to write it; or empty
};

/// The value labels of a numeric variable, to be found by their text.
class LabelIndex {
 public:
  explicit LabelIndex(const Variable& variable);
  /// The values of a label.
  auto equalRange(const std::string& label) const { return labels_.equal_range(label); }

 private:
  std::multimap<std::string, double> labels_;
};

/// Reads a level. A numeric variable takes a number; in quotes also a value label, which comes
/// first, or a date, time or number in its own form; an ordered category in quotes by its label or
/// its text, and bare by its code only where no category reads as another number. A string variable
/// takes any text that is no longer than its widest value.
LevelReading readLevel(const Variable& variable, const LabelIndex& labels, std::string_view written,
                       LevelForm form);

/// A value as a command has to write it to mean it: 1, 'yes', '2024-03-01'.
std::string writtenLevel(const Variable& variable, const SplitValue& value);

/// Adds to the problem of a refused level which values the variable has, and the nearest of them as
/// the suggestion. Reads the cases.
void addOccurringValues(ActiveDataset& dataset, VarIndex index, const std::string& text,
                        LevelReading& reading);

}  // namespace workbench
