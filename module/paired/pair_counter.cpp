#include "module/paired/pair_counter.h"

#include <algorithm>
#include <bit>

#include "module/paired/counts.h"

namespace proportions::paired {
namespace {

/// The words of one variable.
struct Outcomes {
  const uint64_t* success;
  const uint64_t* failure;
};

/// Slots of one weight are summed as integers and weighted once.
[[gnu::always_inline]] inline Counts countCells(const Outcomes& x, const Outcomes& y, size_t slots,
                                                const double* weights, bool equalWeights) {
  Counts cells{};
  if (equalWeights) {
    int64_t a = 0, b = 0, c = 0, d = 0;
    for (size_t i = 0; i < slots; ++i) {
      a += std::popcount(x.success[i] & y.success[i]);
      b += std::popcount(x.success[i] & y.failure[i]);
      c += std::popcount(x.failure[i] & y.success[i]);
      d += std::popcount(x.failure[i] & y.failure[i]);
    }
    const double w = slots == 0 ? 0.0 : weights[0];
    return {w * static_cast<double>(a), w * static_cast<double>(b), w * static_cast<double>(c),
            w * static_cast<double>(d)};
  }
  for (size_t i = 0; i < slots; ++i) {
    cells.a += weights[i] * std::popcount(x.success[i] & y.success[i]);
    cells.b += weights[i] * std::popcount(x.success[i] & y.failure[i]);
    cells.c += weights[i] * std::popcount(x.failure[i] & y.success[i]);
    cells.d += weights[i] * std::popcount(x.failure[i] & y.failure[i]);
  }
  return cells;
}

using CountFunction = Counts (*)(const Outcomes&, const Outcomes&, size_t, const double*, bool);

Counts countPortably(const Outcomes& x, const Outcomes& y, size_t slots, const double* weights,
                     bool equalWeights) {
  return countCells(x, y, slots, weights, equalWeights);
}

#if defined(__x86_64__)
/// The same with the processor's own bit count, which the baseline of the architecture lacks.
[[gnu::target("popcnt")]] Counts countWithPopcnt(const Outcomes& x, const Outcomes& y, size_t slots,
                                                 const double* weights, bool equalWeights) {
  return countCells(x, y, slots, weights, equalWeights);
}

/// The same with one that counts several words at a time.
[[gnu::target("avx512vpopcntdq,popcnt")]] Counts countWithWidePopcnt(
    const Outcomes& x, const Outcomes& y, size_t slots, const double* weights, bool equalWeights) {
  return countCells(x, y, slots, weights, equalWeights);
}
#endif

CountFunction chooseCount() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx512vpopcntdq")) return countWithWidePopcnt;
  if (__builtin_cpu_supports("popcnt")) return countWithPopcnt;
#endif
  return countPortably;
}

}  // namespace

PairCounter::PairCounter(size_t nFirst, size_t nSecond, std::vector<PropZPairSamp>& records)
    : nFirst_(nFirst),
      twoLists_(nSecond > 0),
      records_(records),
      rowLength_((nFirst + nSecond) * 2),
      rows_(rowLength_ * kSlots),
      bits_(rowLength_ * kSlots) {}

/// A slot with room for a case of that weight; a full batch is counted first.
size_t PairCounter::slotFor(double weight) {
  const auto open = [this, weight](size_t slot) {
    return weights_[slot] == weight && filled_[slot] < 64;
  };
  if (last_ < used_ && open(last_)) return last_;
  for (size_t slot = 0; slot < used_; ++slot) {
    if (open(slot)) return last_ = slot;
  }
  if (used_ == kSlots) countBatch();
  weights_[used_] = weight;
  return last_ = used_++;
}

/// Without a branch that depends on the data.
void PairCounter::setBits(const std::vector<Code>& codes, size_t offset, size_t slot,
                          uint64_t bit) {
  uint64_t* word = rows_.data() + slot * rowLength_ + 2 * offset;
  for (const Code code : codes) {
    word[0] |= code == 1 ? bit : 0;
    word[1] |= code == 0 ? bit : 0;
    word += 2;
  }
}

/// Brings the words of each outcome together.
void PairCounter::transpose() {
  for (size_t slot = 0; slot < used_; ++slot) {
    const uint64_t* const row = rows_.data() + slot * rowLength_;
    for (size_t i = 0; i < rowLength_; ++i) bits_[i * kSlots + slot] = row[i];
  }
}

void PairCounter::add(const std::vector<Code>& first, const std::vector<Code>& second,
                      double weight) {
  const size_t slot = slotFor(weight);
  const uint64_t bit = uint64_t{1} << filled_[slot]++;
  setBits(first, 0, slot, bit);
  setBits(second, nFirst_, slot, bit);
}

void PairCounter::countBatch() {
  static const CountFunction count = chooseCount();
  transpose();
  const bool equalWeights =
      std::all_of(weights_, weights_ + used_, [this](double w) { return w == weights_[0]; });
  for (PropZPairSamp& record : records_) {
    const auto i = static_cast<size_t>(record.firstLocalVarIndex);
    const auto j = static_cast<size_t>(record.secondLocalVarIndex) + (twoLists_ ? nFirst_ : 0);
    const Counts cells = count({words(i, true), words(i, false)}, {words(j, true), words(j, false)},
                               used_, weights_, equalWeights);
    record._n11 += cells.a;
    record._n10 += cells.b;
    record._n01 += cells.c;
    record._n00 += cells.d;
  }
  std::fill(rows_.begin(), rows_.end(), 0);
  std::fill(std::begin(filled_), std::end(filled_), 0);
  used_ = last_ = 0;
}

}  // namespace proportions::paired
