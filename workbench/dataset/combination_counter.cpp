#include "workbench/dataset/combination_counter.h"

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 1024;

uint64_t mixed(uint64_t hash, uint32_t code) {
  hash = (hash ^ code) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 29);
}

}  // namespace

void CombinationCounter::add(const std::vector<std::vector<uint32_t>>& codes, size_t count) {
  pending_.assign(count, 0);
  for (const std::vector<uint32_t>& column : codes) {
    for (size_t row = 0; row < count; ++row) pending_[row] = mixed(pending_[row], column[row]);
  }
  for (size_t row = 0; row < count; ++row) {
    if (2 * (counts_.size() + 1) > slots_.size()) grow();
    counts_[insert(pending_[row], codes, row)] += 1.0;
  }
  cases_ += static_cast<int64_t>(count);
}

size_t CombinationCounter::insert(uint64_t hash, const std::vector<std::vector<uint32_t>>& codes,
                                  size_t row) {
  const size_t mask = slots_.size() - 1;
  for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    const uint32_t at = slots_[slot];
    if (at == kNone) {
      slots_[slot] = static_cast<uint32_t>(counts_.size());
      for (const std::vector<uint32_t>& column : codes) keys_.push_back(column[row]);
      hashes_.push_back(hash);
      counts_.push_back(0.0);
      return counts_.size() - 1;
    }
    if (hashes_[at] != hash) continue;
    const uint32_t* key = keys_.data() + at * columns_;
    size_t equal = 0;
    while (equal < columns_ && key[equal] == codes[equal][row]) ++equal;
    if (equal == columns_) return at;
  }
}

void CombinationCounter::grow() {
  slots_.assign(slots_.empty() ? kFirstSlots : 2 * slots_.size(), kNone);
  const size_t mask = slots_.size() - 1;
  for (size_t i = 0; i < hashes_.size(); ++i) {
    size_t slot = hashes_[i] & mask;
    while (slots_[slot] != kNone) slot = (slot + 1) & mask;
    slots_[slot] = static_cast<uint32_t>(i);
  }
}

std::vector<uint32_t> CombinationCounter::codesOf(size_t column) const {
  std::vector<uint32_t> codes(counts_.size());
  for (size_t i = 0; i < codes.size(); ++i) codes[i] = keys_[i * columns_ + column];
  return codes;
}

size_t CombinationCounter::memory() const {
  return (keys_.capacity() + slots_.capacity()) * sizeof(uint32_t) +
         hashes_.capacity() * sizeof(uint64_t) + counts_.capacity() * sizeof(double);
}

double CombinationCounter::estimatedCombinations() const {
  double once = 0;
  double twice = 0;
  for (const double count : counts_) {
    once += count == 1.0 ? 1.0 : 0.0;
    twice += count == 2.0 ? 1.0 : 0.0;
  }
  return static_cast<double>(counts_.size()) + once * (once - 1.0) / (2.0 * (twice + 1.0));
}

}  // namespace workbench
