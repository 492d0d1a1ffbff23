/// A host that runs, whichever it is: opened on a small data set and a command, and read back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/constants.h"

namespace conformance {

/// A variable with its values; a string variable when `width` is above 0.
struct Column {
  std::string name;
  std::vector<double> numbers;
  std::vector<std::string> strings;
  int32_t width = 0;
  std::string label;
  std::vector<double> missingNumbers;
  double missingLow = 1.0;
  double missingHigh = 0.0;
  std::vector<std::string> missingStrings;
  std::vector<std::pair<double, std::string>> numberLabels;
  std::vector<std::pair<std::string, std::string>> stringLabels;
};

Column numbers(const std::string& name, std::vector<double> values);
Column strings(const std::string& name, int32_t width, std::vector<std::string> values);

/// Cases of a split group stand together, groups in ascending order.
struct Situation {
  std::vector<Column> columns = {};
  std::vector<VarIndex> split = {};
  VarIndex weight = -1;
  bool separateLayout = false;
  int64_t chunkSize = 1000;
  std::string command = "PROPORTIONS /ONESAMPLE x.";
};

/// One cell or footnote of a table as a line: `Title: A / B, C = 5 {note}`, places in the order in
/// which the dimensions were added, the split group first: `split "north"`. Labels appear as what
/// was passed.
class OpenHost {
 public:
  virtual ~OpenHost() = default;
  virtual std::vector<std::string> cells() = 0;
  /// `Title: A / B {footnote}{footnote}`, for categories that have any.
  virtual std::vector<std::string> footnotes() = 0;
};

std::unique_ptr<OpenHost> open(const Situation& situation);

}  // namespace conformance
