/// Text dumps of the module's records, field by field, into the host's text display.
#pragma once

#include "module/driver/algorithm.h"

namespace proportions {

void dumpSpecification(const PRPValidSpecs& specs);
/// The analysis object with its category records and the records of its design.
void dumpAlgorithm(const PRPAlgorithm& analysis);
void dumpValue(const VarValue& value);

/// Calls FindNCParamT on a fixed grid and prints the answers to standard output.
void dumpNoncentralityProbe();

}  // namespace proportions
