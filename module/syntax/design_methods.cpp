#include "module/syntax/design_methods.h"

#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"
#include "module/syntax/keywords.h"

namespace proportions {

DesignMethods oneSampleMethods() {
  return {keywords::kOneSample, keywordsOf(kOneSampleTests), keywordsOf(kOneSampleIntervals)};
}

DesignMethods pairedMethods() {
  return {keywords::kPairedSamples, keywordsOf(kPairedTests), keywordsOf(kPairedIntervals)};
}

DesignMethods independentMethods() {
  return {keywords::kIndependentSamples, keywordsOf(kIndependentTests),
          keywordsOf(kIndependentIntervals)};
}

}  // namespace proportions
