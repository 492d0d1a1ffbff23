/// The designs: one row for each model type.
#pragma once

#include <array>

#include "module/model/algorithm.h"
#include "module/model/keywords.h"

namespace proportions {

struct DesignRow {
  Design code;
  const char* subcommand;
  const char* dumpText;  ///< as developers read it
  /// Makes the records that the design fills, in their initial state.
  void (*makeRecords)(PRPAlgorithm& analysis);
};

void makeOneSampleRecords(PRPAlgorithm& analysis);
/// One record per pair of variables, numbered from 0: every two positions of a single list; every
/// position of the first list with every one of the second, first-list-major; or, for ordered
/// pairs, position by position. A pair of a variable with itself is left out.
void makePairedRecords(PRPAlgorithm& analysis);
void makeIndependentRecords(PRPAlgorithm& analysis);

inline constexpr std::array<DesignRow, 3> kDesigns{{
    {Design::kOneSample, keywords::kOneSample, "One Sample", makeOneSampleRecords},
    {Design::kPaired, keywords::kPairedSamples, "Related", makePairedRecords},
    {Design::kIndependent, keywords::kIndependentSamples, "Independent", makeIndependentRecords},
}};

/// The row of a model type; null for one that is unknown.
const DesignRow* findDesign(Design code);

}  // namespace proportions
