/// Which split groups are imputations of which.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "workbench/dataset/active_dataset.h"

namespace workbench {

/// The position of the imputation number among the split variables: the last one named
/// Imputation_, whatever the case of its letters, whose values are plain numbers. Nothing: the data
/// are not imputed. May have to read the data, to know what the values of such a variable are.
std::optional<size_t> imputationPosition(ActiveDataset& dataset);

/// What the groups of imputed data look like.
struct ImputationCheck {
  size_t imputations = 0;        ///< most that a group of the other split variables has
  bool originalMissing = false;  ///< some group has no original data (imputation 0)
  bool sizesDiffer = false;      ///< some imputations of one group differ in their weighted cases
};

/// Reads the groups of the data set, which has to be ready for a command. An imputation's number
/// is the nearest whole number, halves up.
ImputationCheck checkImputations(ActiveDataset& dataset, size_t position);

}  // namespace workbench
