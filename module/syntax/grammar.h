/// The syntax of PROPORTIONS, described to the host's parser.
#pragma once

#include "host/parser.h"

namespace proportions {

/// Adds the six subcommands with their parameters, in registration order.
void BuildCommandDescriptor(CommandDescriptor& command);

}  // namespace proportions
