/// PAIREDSAMPLES: the two lists or the pairs, and methods.
#pragma once

#include "module/syntax/parse_context.h"

namespace proportions {

/// Fills the record. False, after a message, when the subcommand is not valid.
bool validatePairedSamples(ParseContext& context, SubComObj& subcommand);

}  // namespace proportions
