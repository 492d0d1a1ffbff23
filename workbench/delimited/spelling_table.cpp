#include "workbench/delimited/spelling_table.h"

#include <stdexcept>

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 64;

}  // namespace

SpellingTable::SpellingTable() { clear(); }

void SpellingTable::clear() {
  recent_.fill({});
  slots_.assign(kFirstSlots, Slot());
  slots_.shrink_to_fit();
  hashes_.assign(1, 0);
  slots_[0] = {0, 0};
  bytes_ = std::string();
  ends_.assign(1, 0);
  places_.assign(1, DelimitedPlace());
}

uint64_t SpellingTable::hashOf(const char* begin, size_t length) {
  uint64_t hash = length;
  for (; length > sizeof(uint64_t); begin += sizeof(uint64_t), length -= sizeof(uint64_t)) {
    hash = mixed(hash ^ keyOf(begin, sizeof(uint64_t)));
  }
  return mixed(hash ^ keyOf(begin, length));
}

uint32_t SpellingTable::insert(std::string_view field, uint64_t hash, DelimitedPlace place) {
  if (ends_.size() == kFree) throw std::length_error("too many different fields in a column");
  if (2 * (ends_.size() + 1) > slots_.size()) grow();
  const auto code = static_cast<uint32_t>(ends_.size());
  bytes_ += field;
  ends_.push_back(bytes_.size());
  places_.push_back(place);
  hashes_.push_back(hash);
  size_t at = hash & (slots_.size() - 1);
  while (slots_[at].code != kFree) at = (at + 1) & (slots_.size() - 1);
  slots_[at] = {static_cast<uint32_t>(hash >> 20U), code};
  return code;
}

void SpellingTable::grow() {
  slots_.assign(slots_.size() * 2, Slot());
  for (uint32_t code = 0; code < hashes_.size(); ++code) {
    size_t at = hashes_[code] & (slots_.size() - 1);
    while (slots_[at].code != kFree) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = {static_cast<uint32_t>(hashes_[code] >> 20U), code};
  }
}

size_t SpellingTable::memory() const {
  return slots_.capacity() * sizeof(Slot) + hashes_.capacity() * sizeof(uint64_t) +
         bytes_.capacity() + ends_.capacity() * sizeof(uint64_t) +
         places_.capacity() * sizeof(DelimitedPlace);
}

}  // namespace workbench
