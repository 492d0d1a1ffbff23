/// Reads one split group case by case, in both passes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/data_source.h"
#include "module/data/case_values.h"
#include "module/data/classification.h"
#include "module/data/extremes.h"

namespace proportions {

/// A case's weight as it counts: rounded half up to a whole number. Nothing for a weight that drops
/// the case: missing, NaN or below 0.5.
std::optional<double> roundedWeight(double weight);

/// A used case. The first pass only collects: the lists of codes stay empty.
struct UsedCase {
  std::vector<Code> first;
  std::vector<Code> second;
  int32_t group = kNotCounted;
  double weight = 1.0;
  const Case* data = nullptr;
};

/// Reads the cases of one analysis object's split group from an iterator that stands at the group's
/// start.
class CaseReader {
 public:
  CaseReader(PRPAlgorithm& analysis, ProcDSIterator& iterator);
  CaseReader(const CaseReader&) = delete;
  CaseReader& operator=(const CaseReader&) = delete;

  /// Advances to the next used case of the group, counting every case on the way; false at the end
  /// of the group or of the data. Tells the output of a new split group at its first case.
  bool nextUsedCase(UsedCase& used);

 private:
  bool useCase(const Case& data, UsedCase& used);
  bool takeValues(const Case& data, UsedCase& used);

  PRPAlgorithm& analysis_;
  ProcDSIterator& iterator_;
  CaseValues values_;
  std::optional<ExtremesCollector> collector_;  ///< of the first pass
  std::optional<Classifier> classifier_;        ///< of the second
};

}  // namespace proportions
