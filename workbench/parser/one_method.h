/// Lists of methods cut down to one, for runs of which only the estimates are wanted.
#pragma once

#include "workbench/parser/parsed_command.h"

namespace workbench {

/// Puts WALD, which every design has and which costs next to nothing, in the place of the tests and
/// intervals that a design's subcommand asks for, or gets without asking; NONE remains. What tables
/// show beside the methods' own results does not depend on which methods these are.
void keepOneMethod(SubComObj::Impl& design);

}  // namespace workbench
