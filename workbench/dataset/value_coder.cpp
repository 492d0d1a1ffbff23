#include "workbench/dataset/value_coder.h"

#include <bit>
#include <functional>
#include <stdexcept>

namespace workbench {
namespace {

constexpr size_t kFirstSlots = 64;

size_t hashOf(double value) {
  auto bits = std::bit_cast<uint64_t>(value) * 0x9E3779B97F4A7C15U;
  return static_cast<size_t>(bits ^ (bits >> 32));
}

void refuseTooMany(size_t count) {
  if (count >= 0xFFFFFFFE) throw std::length_error("too many different values to be held");
}

}  // namespace

uint32_t NumberCoder::add(double value, std::vector<double>& values) {
  refuseTooMany(values.size());
  values.push_back(value);
  return static_cast<uint32_t>(values.size() - 1);
}

size_t NumberCoder::slotOf(double value, const std::vector<double>& values) const {
  const size_t mask = slots_.size() - 1;
  size_t slot = hashOf(value) & mask;
  while (slots_[slot] != kNone && values[slots_[slot]] != value) slot = (slot + 1) & mask;
  return slot;
}

uint32_t NumberCoder::codeOfAny(double value, std::vector<double>& values) {
  if (2 * (used_ + 1) > slots_.size()) grow(values);
  uint32_t& known = slots_[slotOf(value, values)];
  if (known == kNone) {
    known = add(value, values);
    ++used_;
  }
  return known;
}

void NumberCoder::grow(const std::vector<double>& values) {
  const std::vector<uint32_t> old = std::move(slots_);
  slots_.assign(old.empty() ? kFirstSlots : 2 * old.size(), kNone);
  for (const uint32_t code : old) {
    if (code != kNone) slots_[slotOf(values[code], values)] = code;
  }
}

uint32_t TextCoder::code(std::string_view value, TextList& values) {
  if (2 * (used_ + 1) > slots_.size()) grow();
  const size_t full = std::hash<std::string_view>{}(value);
  const auto hash = static_cast<uint32_t>(full);
  const size_t mask = slots_.size() - 1;
  size_t at = hash & mask;
  while (slots_[at].code != 0xFFFFFFFF) {
    if (slots_[at].hash == hash && values[slots_[at].code] == value) return slots_[at].code;
    at = (at + 1) & mask;
  }
  refuseTooMany(values.size());
  values.add(value);
  ++used_;
  slots_[at] = {hash, static_cast<uint32_t>(values.size() - 1)};
  return slots_[at].code;
}

void TextCoder::grow() {
  const std::vector<Slot> old = std::move(slots_);
  slots_.assign(old.empty() ? kFirstSlots : 2 * old.size(), Slot{});
  const size_t mask = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.code == 0xFFFFFFFF) continue;
    size_t at = slot.hash & mask;
    while (slots_[at].code != 0xFFFFFFFF) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

}  // namespace workbench
