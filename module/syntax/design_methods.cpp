#include "module/syntax/design_methods.h"

#include "module/independent/intervals.h"
#include "module/independent/significance.h"
#include "module/model/keywords.h"
#include "module/onesample/intervals.h"
#include "module/onesample/significance.h"
#include "module/paired/intervals.h"
#include "module/paired/significance.h"

namespace proportions {

DesignMethods oneSampleMethods() {
  return {keywords::kOneSample, keywordsOf(onesample::kTests), keywordsOf(onesample::kIntervals)};
}

DesignMethods pairedMethods() {
  return {keywords::kPairedSamples, keywordsOf(paired::kTests), keywordsOf(paired::kIntervals)};
}

DesignMethods independentMethods() {
  return {keywords::kIndependentSamples, keywordsOf(independent::kTests),
          keywordsOf(independent::kIntervals)};
}

}  // namespace proportions
