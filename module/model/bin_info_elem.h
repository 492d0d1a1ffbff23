/// One success or grouping definition.
#pragma once

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
};

}  // namespace proportions
