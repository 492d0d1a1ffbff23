/// Finds the codes of values as they come: the first different value has the code 0, and so on.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "workbench/dataset/coded_cases.h"

namespace workbench {

/// Numbers as cases carry them. The list of different values is the caller's and must not be
/// changed between calls by anybody else.
class NumberCoder {
 public:
  NumberCoder() { small_.fill(kNone); }
  uint32_t code(double value, std::vector<double>& values) {
    const auto whole = static_cast<int32_t>(value > -kSmall && value < kSmall ? value : kSmall);
    if (whole == value && whole >= 0 && whole < kSmall) {
      uint32_t& known = small_[static_cast<size_t>(whole)];
      if (known == kNone) known = add(value, values);
      return known;
    }
    return codeOfAny(value, values);
  }
  size_t memory() const { return slots_.capacity() * sizeof(uint32_t); }

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;
  static constexpr int32_t kSmall = 256;
  uint32_t codeOfAny(double value, std::vector<double>& values);
  static uint32_t add(double value, std::vector<double>& values);
  void grow(const std::vector<double>& values);
  size_t slotOf(double value, const std::vector<double>& values) const;

  std::array<uint32_t, kSmall> small_;  // of the whole numbers from 0 on
  std::vector<uint32_t> slots_;         // of all others: open addressing
  size_t used_ = 0;
};

/// Texts, likewise.
class TextCoder {
 public:
  uint32_t code(std::string_view value, TextList& values);
  size_t memory() const { return slots_.capacity() * sizeof(Slot); }

 private:
  struct Slot {
    uint32_t hash = 0;
    uint32_t code = 0xFFFFFFFF;
  };
  void grow();

  std::vector<Slot> slots_;
  size_t used_ = 0;
};

}  // namespace workbench
