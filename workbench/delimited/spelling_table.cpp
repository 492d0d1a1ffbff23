#include "workbench/delimited/spelling_table.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 8;
constexpr size_t kMostRecent = 256;

}  // namespace

SpellingTable::SpellingTable() { clear(); }

void SpellingTable::clear() {
  slots_ = std::vector<Slot>(kFirstSlots);
  bytes_ = std::string();
  ends_ = {0};
  parts_ = {0};
  lines_ = {0};
  recent_.clear();
  makeRecent();
  put(0, hashOf(0));
}

/// Room enough for few of the fields to get in each other's way.
void SpellingTable::makeRecent() {
  const size_t size = std::min(4 * slots_.size(), kMostRecent);
  if (size == recent_.size()) return;
  recent_.assign(size, {});
  recentShift_ = 64 - static_cast<unsigned>(std::countr_zero(size));
}

uint64_t SpellingTable::hashOf(const char* begin, size_t length) {
  uint64_t hash = length;
  for (; length > sizeof(uint64_t); begin += sizeof(uint64_t), length -= sizeof(uint64_t)) {
    hash = mixed(hash ^ keyOf(begin, sizeof(uint64_t)));
  }
  return mixed(hash ^ keyOf(begin, length));
}

uint64_t SpellingTable::hashOf(uint32_t code) const {
  const std::string_view field = (*this)[code];
  if (field.size() > sizeof(uint64_t)) {
    // The last word may reach beyond the bytes.
    std::string padded(field);
    padded.append(sizeof(uint64_t), '\0');
    return hashOf(padded.data(), field.size());
  }
  char word[sizeof(uint64_t)] = {};
  field.copy(word, sizeof word);
  return mixed(keyOf(word, field.size()));
}

uint32_t SpellingTable::insert(std::string_view field, uint64_t hash, DelimitedPlace place) {
  if (ends_.size() == kFree) throw std::length_error("too many different fields in a column");
  if (2 * (ends_.size() + 1) > slots_.size()) grow();
  const auto code = static_cast<uint32_t>(ends_.size());
  bytes_ += field;
  ends_.push_back(bytes_.size());
  parts_.push_back(place.part);
  lines_.push_back(place.line);
  put(code, hash);
  return code;
}

void SpellingTable::put(uint32_t code, uint64_t hash) {
  size_t at = hash & (slots_.size() - 1);
  while (slots_[at].code != kFree) at = (at + 1) & (slots_.size() - 1);
  slots_[at] = {static_cast<uint32_t>(hash >> 20U), code};
}

void SpellingTable::grow() {
  const size_t slots = slots_.size() * 2;
  slots_ = std::vector<Slot>();
  slots_.resize(slots);
  makeRecent();
  for (uint32_t code = 0; code < ends_.size(); ++code) put(code, hashOf(code));
}

size_t SpellingTable::memory() const {
  return sizeof *this + recent_.capacity() * sizeof(Recent) + slots_.capacity() * sizeof(Slot) +
         bytes_.capacity() +
         ends_.capacity() * (sizeof(uint64_t) + sizeof(uint32_t) + sizeof(uint64_t));
}

}  // namespace workbench
