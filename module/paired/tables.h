/// The three tables of the paired design.
#pragma once

#include "module/driver/algorithm.h"

namespace proportions {

/// Each adds one pair's rows; a pair without observations shows its label only.
void buildPairedStatisticsTable(PRPAlgorithm& analysis, const PropZPairSamp& record);
void buildPairedIntervalTable(PRPAlgorithm& analysis, const PropZPairSamp& record);
void buildPairedTestTable(PRPAlgorithm& analysis, const PropZPairSamp& record);

/// The items that name a pair in labels and warnings: its number from 1, and its two variables.
void addPairItems(const PRPAlgorithm& analysis, const PropZPairSamp& record, BpComposite& label);

}  // namespace proportions
