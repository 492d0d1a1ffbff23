/// How a design lists its methods: one table per family, whose order is the order of flags,
/// keywords and rows.
#pragma once

namespace proportions {

template <typename Function>
struct Method {
  const char* keyword;
  const char* label;
  bool byDefault;
  Function function;
  /// The standard normal distribution is in it: a test shows a Z, an interval is missing where the
  /// critical value is.
  bool isNormal = true;
};

}  // namespace proportions
