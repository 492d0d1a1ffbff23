/// What the manual says of the methods that results come from.
#pragma once

#include <string_view>

#include "workbench/results/methods.h"

namespace workbench {

/// What the letters of a design's formulas mean, as Markdown.
std::string_view notationOf(Design design);

/// Formula, source and limits of a method, as Markdown; empty when the manual does not know it.
std::string_view describedMethod(const Method& method);

}  // namespace workbench
