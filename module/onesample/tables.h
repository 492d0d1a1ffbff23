/// The two tables of the one-sample design.
#pragma once

#include "module/driver/algorithm.h"

namespace proportions {

/// Each adds one variable's rows: its label, and a row per requested method when the record has
/// trials.
void buildOneSampleIntervalTable(PRPAlgorithm& analysis, const PropZOneSamp& record);
void buildOneSampleTestTable(PRPAlgorithm& analysis, const PropZOneSamp& record);

}  // namespace proportions
