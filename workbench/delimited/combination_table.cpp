#include "workbench/delimited/combination_table.h"

#include <algorithm>
#include <utility>

#include "workbench/delimited/mixing.h"

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 1024;

}  // namespace

CombinationTable::CombinationTable(size_t columns)
    : words_(std::max<size_t>(1, (columns + kCodesPerWord - 1) / kCodesPerWord)),
      slots_(kFirstSlots),
      table_(kFirstSlots * (words_ + 1)) {}

uint64_t* CombinationTable::slotOf(const uint64_t* words) {
  uint64_t hash = 0;
  for (size_t i = 0; i < words_; ++i) hash = mixed(hash ^ words[i]);
  const size_t width = words_ + 1;
  for (size_t at = hash & (slots_ - 1);; at = (at + 1) & (slots_ - 1)) {
    uint64_t* slot = table_.data() + at * width;
    if (slot[0] == 0 || std::equal(words, words + words_, slot + 1)) return slot;
  }
}

void CombinationTable::add(const uint64_t* words, int64_t times) {
  uint64_t* slot = slotOf(words);
  cases_ += times;
  if (slot[0] == 0) {
    std::copy_n(words, words_, slot + 1);
    ++size_;
  }
  slot[0] += static_cast<uint64_t>(times);
  if (2 * size_ > slots_) grow();
}

void CombinationTable::grow() {
  const std::vector<uint64_t> before =
      std::exchange(table_, std::vector<uint64_t>(2 * slots_ * (words_ + 1)));
  slots_ *= 2;
  for (size_t at = 0; at < before.size(); at += words_ + 1) {
    if (before[at] == 0) continue;
    std::copy_n(before.data() + at, words_ + 1, slotOf(before.data() + at + 1));
  }
}

}  // namespace workbench
