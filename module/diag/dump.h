/// Text dumps of the module's records, field by field, into the host's text display.
#pragma once

#include "module/model/algorithm.h"

namespace proportions {

void dumpSpecification(const PRPValidSpecs& specs);
/// The analysis object with its category records and the records of its design.
void dumpAlgorithm(const PRPAlgorithm& analysis);
/// A gathered value. No dump of a run reaches one; a debugger may ask.
void dumpValue(const VarValue& value);

/// Calls FindNCParamT on a fixed grid and prints the answers to standard output.
void dumpNoncentralityProbe();

}  // namespace proportions
