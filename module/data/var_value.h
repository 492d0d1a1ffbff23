/// One value of either kind, gathered from several split groups.
#pragma once

#include <string>

#include "host/constants.h"

namespace proportions {

struct VarValue {
  bool isString = false;
  double numericValue = kSystemMissing;
  std::string stringValue;

  static VarValue number(double value) { return {false, value, {}}; }
  static VarValue text(std::string value) { return {true, kSystemMissing, std::move(value)}; }
};

/// Strings by the host's collation over the longer of the two lengths; numbers ascending, the
/// missing value first. Two values of different kinds are never compared.
struct VarValueLess {
  bool operator()(const VarValue& a, const VarValue& b) const;
};

}  // namespace proportions
