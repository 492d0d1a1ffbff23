/// MISSING: scope and user-missing values.
#pragma once

#include "module/syntax/parse_context.h"

namespace proportions {

/// Fills the record; what is absent keeps its default.
void validateMissing(ParseContext& context, SubComObj& subcommand);

}  // namespace proportions
