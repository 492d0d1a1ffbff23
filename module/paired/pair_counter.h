/// Cross-counts many pairs of variables at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "module/model/codes.h"
#include "module/model/paired_record.h"

namespace proportions::paired {

/// Counts cases of equal weight 64 at a time: the outcomes of a variable are two words of bits
/// (successes, failures), and a cell of a pair's table is the number of bits that two words have in
/// common. With hundreds of variables this is some fifty times cheaper than a look at every pair
/// for every case. Exact as long as all counts are whole numbers up to 2^53, in any order.
class PairCounter {
 public:
  /// `nFirst` and `nSecond` are the lengths of the two lists; with an empty second list the pairs'
  /// second members are looked up in the first.
  PairCounter(size_t nFirst, size_t nSecond, std::vector<PropZPairSamp>& records);

  void add(const std::vector<Code>& first, const std::vector<Code>& second, double weight);
  /// Brings the records' four cells up to date. To be called once, after the last case.
  void finish() { countBatch(); }

 private:
  static constexpr size_t kSlots = 64;

  size_t slotFor(double weight);
  void setBits(const std::vector<Code>& codes, size_t offset, size_t slot, uint64_t bit);
  void transpose();
  void countBatch();
  const uint64_t* words(size_t position, bool success) const {
    return &bits_[(2 * position + (success ? 0 : 1)) * kSlots];
  }

  size_t nFirst_;
  bool twoLists_;
  std::vector<PropZPairSamp>& records_;
  size_t rowLength_;
  std::vector<uint64_t> rows_;  ///< [slot][variable][success, failure]: a case writes side by side
  std::vector<uint64_t> bits_;  ///< [variable][success, failure][slot]: a pair reads side by side
  double weights_[kSlots] = {};
  int filled_[kSlots] = {};  ///< cases in the slot, up to 64
  size_t used_ = 0;
  size_t last_ = 0;
};

}  // namespace proportions::paired
