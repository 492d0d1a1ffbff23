/// TESTTYPES and CITYPES, which every design has.
#pragma once

#include <string>
#include <vector>

#include "module/syntax/design_methods.h"
#include "module/syntax/parse_context.h"

namespace proportions {

/// What became of a design's two lists.
struct MethodLists {
  bool valid;           ///< neither has NONE in company, and the subcommand was valid before
  bool tableRequested;  ///< not both are NONE
};

/// Sizes both flag vectors of the record whatever the outcome, and fills them as long as the
/// subcommand, so far `valid`, stays so.
MethodLists readMethodLists(ParseContext& context, SubComObj& subcommand,
                            const DesignMethods& design, bool valid);

/// Keeps first occurrences in their order; warns of repeats and tells whether there was one.
bool removeDuplicateOptions(ParseContext& context, std::vector<std::string>& options,
                            const char* parameter, const char* subcommand);

}  // namespace proportions
