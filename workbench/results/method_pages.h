/// What the documents in docs/methods say, as Markdown; the library holds them itself.
#pragma once

#include <string_view>

#include "workbench/results/methods.h"

namespace workbench {

/// What the letters mean that the formulas of all designs share.
std::string_view sharedNotation();

/// What the letters of a design's formulas mean.
std::string_view notationOf(Design design);

/// Formula, source and limits of a method; empty when no page knows it.
std::string_view describedMethod(const Method& method);

}  // namespace workbench
