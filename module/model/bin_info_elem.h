/// One success or grouping definition.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/data_source.h"
#include "module/model/codes.h"

namespace proportions {

/// A value in its variable's own representation, as 8-byte words.
using ValueBuffer = std::vector<double>;

struct BinInfoElem {
  SuccessRule rule = SuccessRule::kLast;
  bool categorical = true;  ///< values are matched as categories, not compared as numbers
  std::vector<double> numericValues;
  std::vector<std::string> stringValues;
  std::vector<std::shared_ptr<const ValueBuffer>> rawValues;
  int32_t obsLength = 1;  ///< 8-byte words in one value of the variable
  ZELK_Format printFormat;

  /// The cut point; the missing value when the definition holds none.
  double cutPoint() const { return numericValues.empty() ? kSystemMissing : numericValues.front(); }

  /// Makes long lists of values quick to search; once, after the last value was added. Without it
  /// the answers below are the same, after a search from first to last.
  void sortValues();
  /// True when one of the numbers is equal: a minus zero is a zero, a NaN is none of them.
  bool hasNumber(double value) const {
    if (numberOrder_.empty()) return isAmong(numericValues, value);
    return findNumber(value);
  }
  /// True when one of the texts is the same, byte for byte.
  bool hasText(const std::string& value) const {
    if (textOrder_.empty()) return isAmong(stringValues, value);
    return findText(value);
  }

 private:
  template <typename Value>
  static bool isAmong(const std::vector<Value>& list, const Value& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
  }
  bool findNumber(double value) const;
  bool findText(const std::string& value) const;

  // Empty unless the lists are long.
  std::vector<double> numberOrder_;  ///< the numbers, ascending, but for NaN
  std::vector<uint32_t> textOrder_;  ///< positions of the texts, ascending by their bytes
};

}  // namespace proportions
