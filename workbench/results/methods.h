/// The methods as commands name them, tables label them and sentences call them.
#pragma once

#include <string_view>

#include "workbench/results/known_labels.h"

namespace workbench {

struct Method {
  TableKind table;           ///< where it has its rows
  std::string_view keyword;  ///< of CITYPES or TESTTYPES
  std::string_view label;    ///< key of its rows' label
  std::string_view phrase;   ///< its name within a sentence
};

/// The method of a row by its label's key; null when it is not known.
const Method* findMethod(TableKind table, std::string_view labelKey);

}  // namespace workbench
