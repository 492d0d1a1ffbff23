/// The variables of a data set at a glance.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "workbench/dataset/active_dataset.h"
#include "workbench/session/session.h"

namespace workbench {

/// Values that are listed of a variable at most.
inline constexpr size_t kListedValues = 20;

struct ListedValue {
  std::variant<double, std::string> value;
  int64_t count;  ///< cases, not weighted
};

struct ListedVariable {
  VarIndex variable;
  std::vector<ListedValue> values;  ///< the smallest valid ones, in order
  bool hasMore = false;             ///< there are more than are listed
  int64_t missing = 0;              ///< cases whose value is missing, of whatever kind
};

/// How the data set that is listed is read.
struct ListingSource {
  size_t mostVariables;  ///< read at a time, however few the cases
  /// As SourceDataset::fitInMemory.
  std::function<bool(const std::vector<VarIndex>&)> fitInMemory;
};

/// Reads the session's data, as many variables at a time as fit into memory. What fails shows in
/// the data set.
std::vector<ListedVariable> listVariables(Session& session, const ListingSource& source);

/// As proportions-variables/1.
void writeListingAsJson(const ActiveDataset& dataset, const std::vector<ListedVariable>& variables,
                        std::ostream& out);
void writeListingAsText(const ActiveDataset& dataset, const std::vector<ListedVariable>& variables,
                        size_t width, std::ostream& out);

}  // namespace workbench
