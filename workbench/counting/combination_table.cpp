#include "workbench/counting/combination_table.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "workbench/counting/mixing.h"

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 1024;
constexpr unsigned kWordBits = 64;
constexpr size_t kAhead = 16;  // combinations whose slots are on their way from memory

}  // namespace

CombinationTable::CombinationTable(size_t columns) : slots_(kFirstSlots) {
  place(std::vector<unsigned>(columns, 1));
  table_.resize(slots_ * (words_ + 1));
}

void CombinationTable::place(std::vector<unsigned> bits) {
  bits_ = std::move(bits);
  fields_.clear();
  uint32_t word = 0;
  unsigned free = kWordBits;
  for (const unsigned width : bits_) {
    if (width > free) {
      ++word;
      free = kWordBits;
    }
    free -= width;
    fields_.push_back({word, free, static_cast<uint32_t>((uint64_t{1} << width) - 1)});
  }
  words_ = word + size_t{1};
}

void CombinationTable::fit(const std::vector<size_t>& codes) {
  std::vector<unsigned> bits = bits_;
  for (size_t i = 0; i < bits.size(); ++i) {
    bits[i] = std::max(bits[i], static_cast<unsigned>(std::bit_width(codes[i] - 1)));
  }
  if (bits == bits_) return;
  const CombinationTable before = *this;
  place(std::move(bits));
  size_ = 0;
  table_.assign(slots_ * (words_ + 1), 0);
  std::vector<uint64_t> combination(words_);
  before.forEach([&](const uint64_t* words, int64_t count) {
    std::fill(combination.begin(), combination.end(), 0);
    for (size_t column = 0; column < fields_.size(); ++column) {
      const uint32_t code = before.codeIn(words, column);
      pack(column, &code, 1, combination.data());
    }
    add(combination.data(), count);
  });
}

void CombinationTable::pack(size_t column, const uint32_t* codes, size_t count,
                            uint64_t* combinations) const {
  const Field field = fields_[column];
  for (size_t i = 0; i < count; ++i) {
    combinations[i * words_ + field.word] |= static_cast<uint64_t>(codes[i]) << field.shift;
  }
}

uint64_t CombinationTable::hashOf(const uint64_t* combination) const {
  uint64_t hash = 0;
  for (size_t i = 0; i < words_; ++i) hash = mixed(hash ^ combination[i]);
  return hash;
}

uint64_t* CombinationTable::slotOf(const uint64_t* combination, uint64_t hash) {
  for (size_t at = hash & (slots_ - 1);; at = (at + 1) & (slots_ - 1)) {
    uint64_t* slot = table_.data() + at * (words_ + 1);
    if (slot[0] == 0) return slot;
    size_t same = 0;
    while (same < words_ && slot[same + 1] == combination[same]) ++same;
    if (same == words_) return slot;
  }
}

void CombinationTable::addAll(const uint64_t* combinations, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (i + kAhead < count) {
      const uint64_t hash = hashOf(combinations + (i + kAhead) * words_);
      __builtin_prefetch(table_.data() + (hash & (slots_ - 1)) * (words_ + 1));
    }
    add(combinations + i * words_, 1);
  }
}

void CombinationTable::add(const uint64_t* combination, int64_t times) {
  uint64_t* slot = slotOf(combination, hashOf(combination));
  const bool isNew = slot[0] == 0;
  slot[0] += static_cast<uint64_t>(times);
  if (!isNew) return;
  std::copy_n(combination, words_, slot + 1);
  if (2 * ++size_ > slots_) grow();
}

double CombinationTable::estimatedSize() const {
  double once = 0;
  double twice = 0;
  forEach([&](const uint64_t*, int64_t count) {
    once += count == 1 ? 1.0 : 0.0;
    twice += count == 2 ? 1.0 : 0.0;
  });
  return static_cast<double>(size_) + once * (once - 1.0) / (2.0 * (twice + 1.0));
}

void CombinationTable::grow() {
  const std::vector<uint64_t> before =
      std::exchange(table_, std::vector<uint64_t>(2 * slots_ * (words_ + 1)));
  slots_ *= 2;
  for (size_t at = 0; at < before.size(); at += words_ + 1) {
    if (before[at] == 0) continue;
    const uint64_t* combination = before.data() + at + 1;
    std::copy_n(before.data() + at, words_ + 1, slotOf(combination, hashOf(combination)));
  }
}

}  // namespace workbench
