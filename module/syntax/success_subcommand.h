/// SUCCESS: what counts as a success, for every variable of the design.
#pragma once

#include "module/syntax/parse_context.h"

namespace proportions {

/// Fills the record; `subcommand` is null when it was not written. False, after a message, when a
/// variable does not accept the rule.
bool validateSuccess(ParseContext& context, SubComObj* subcommand);

}  // namespace proportions
