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

/// Strings by the host's collation over the longer of the two lengths; the missing value, then
/// numbers ascending, then NaN, so that the order is a strict one of all doubles. Two values of
/// different kinds are never compared.
struct VarValueLess {
  bool operator()(const VarValue& a, const VarValue& b) const;
};

}  // namespace proportions
