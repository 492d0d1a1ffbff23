#include "module/diag/switches.h"

namespace proportions {

bool DiagnosticSwitches::dumpSpecification = false;
bool DiagnosticSwitches::dumpAnalysis = false;
bool DiagnosticSwitches::probeNoncentrality = false;

}  // namespace proportions
