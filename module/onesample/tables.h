/// The two tables of the one-sample design.
#pragma once

#include "module/model/algorithm.h"

namespace proportions::onesample {

/// Each adds one variable's rows: its label, and a row per requested method when the record has
/// trials.
void buildOneSampleIntervalTable(const PRPAlgorithm& analysis, const PropZOneSamp& record);
void buildOneSampleTestTable(const PRPAlgorithm& analysis, const PropZOneSamp& record);

}  // namespace proportions::onesample
