/// The method families of a design as the syntax sees them: keywords and defaults, in flag order.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace proportions {

struct MethodKeyword {
  std::string keyword;
  bool byDefault;
};
using MethodKeywords = std::vector<MethodKeyword>;

/// Keywords and defaults of a method table.
template <typename Table>
MethodKeywords keywordsOf(const Table& table) {
  MethodKeywords result;
  for (const auto& method : table) result.push_back({method.keyword, method.byDefault});
  return result;
}

struct DesignMethods {
  const char* subcommand;
  MethodKeywords tests;
  MethodKeywords intervals;
};

DesignMethods oneSampleMethods();
DesignMethods pairedMethods();
DesignMethods independentMethods();

}  // namespace proportions
