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
    const size_t place = placeOf(value);
    if (place == kSmall) return codeOfAny(value, values);
    uint32_t& known = small_[place];
    if (known == kNone) known = add(value, values);
    return known;
  }
  /// The codes of `count` values.
  void code(const double* in, size_t count, std::vector<double>& values, uint32_t* out) {
    for (size_t i = 0; i < count; ++i) {
      const uint32_t known = small_[placeOf(in[i])];
      out[i] = known != kNone ? known : code(in[i], values);
    }
  }
  size_t memory() const { return slots_.capacity() * sizeof(uint32_t); }

 private:
  static constexpr uint32_t kNone = 0xFFFFFFFF;
  /// The whole numbers from 0 on and the missing value, which are most of what there is, have
  /// places of their own.
  static constexpr size_t kWhole = 255;
  static constexpr size_t kMissing = kWhole;
  static constexpr size_t kSmall = kWhole + 1;  // all others
  static size_t placeOf(double value) {
    if (value == kSystemMissing) return kMissing;
    const double inside = value >= 0.0 && value < kWhole ? value : kSmall;
    const auto whole = static_cast<int32_t>(inside);
    return whole == inside ? static_cast<size_t>(whole) : kSmall;
  }
  uint32_t codeOfAny(double value, std::vector<double>& values);
  static uint32_t add(double value, std::vector<double>& values);
  void grow(const std::vector<double>& values);
  size_t slotOf(double value, const std::vector<double>& values) const;

  std::array<uint32_t, kSmall + 1> small_;  // by place; that of all others stays empty
  std::vector<uint32_t> slots_;             // of all others: open addressing
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
