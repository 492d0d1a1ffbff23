/// The three tables of the paired design.
#pragma once

#include "host/output.h"
#include "module/model/algorithm.h"

namespace proportions::paired {

/// Each adds one pair's rows; a pair without observations shows its label only.
void buildPairedStatisticsTable(const PRPAlgorithm& analysis, const PropZPairSamp& record);
void buildPairedIntervalTable(const PRPAlgorithm& analysis, const PropZPairSamp& record);
void buildPairedTestTable(const PRPAlgorithm& analysis, const PropZPairSamp& record);

/// The items that name a pair in labels and warnings: its number from 1, and its two variables.
void addPairItems(const PRPAlgorithm& analysis, const PropZPairSamp& record, BpComposite& label);

}  // namespace proportions::paired
