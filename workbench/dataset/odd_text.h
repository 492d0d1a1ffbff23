/// Single values that made a column of some other kind a column of texts.
#pragma once

#include <string>

#include "workbench/values/field.h"

namespace workbench {

/// The first value of a column of texts that is not of the kind of nearly all others.
struct OddText {
  std::string text;
  std::string place;                     ///< file and line
  FieldKind usual = FieldKind::kNumber;  ///< what the others are; never a text
};

}  // namespace workbench
