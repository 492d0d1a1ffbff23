/// The notes of a run: how missing values, cases and weights were handled.
#pragma once

#include "module/model/valid_specs.h"

namespace proportions {

/// Adds the three rows. Called once per run of the command.
void addProcedureNotes(const PRPValidSpecs& specs);

}  // namespace proportions
