/// The three tables of the independent-samples design.
#pragma once

#include "module/driver/algorithm.h"

namespace proportions {

/// Each adds one variable's rows; a record that is not good shows its label only.
void buildIndependentGroupStatisticsTable(PRPAlgorithm& analysis, const PropZIndSamp& record);
void buildIndependentIntervalTable(PRPAlgorithm& analysis, const PropZIndSamp& record);
void buildIndependentTestTable(PRPAlgorithm& analysis, const PropZIndSamp& record);

}  // namespace proportions
