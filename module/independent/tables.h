/// The three tables of the independent-samples design.
#pragma once

#include "module/model/algorithm.h"

namespace proportions::independent {

/// Each adds one variable's rows; a record that is not good shows its label only.
void buildIndependentGroupStatisticsTable(const PRPAlgorithm& analysis, const PropZIndSamp& record);
void buildIndependentIntervalTable(const PRPAlgorithm& analysis, const PropZIndSamp& record);
void buildIndependentTestTable(const PRPAlgorithm& analysis, const PropZIndSamp& record);

}  // namespace proportions::independent
