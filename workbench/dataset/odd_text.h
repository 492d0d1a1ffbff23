/// Single values that made a column of some other kind a column of texts.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/values/field.h"

namespace workbench {

/// The first value of a column of texts that is not of the kind of nearly all others.
struct OddText {
  std::string text;
  std::string place;                     ///< file and line
  FieldKind usual = FieldKind::kNumber;  ///< what the others are; never a text
};

/// Counts the values of a column of texts by what each is by itself.
class KindTally {
 public:
  /// Orders values as the data have them.
  using Position = std::pair<uint64_t, uint64_t>;
  struct Odd {
    Position position;
    std::string text;
    FieldKind usual = FieldKind::kNumber;
  };

  void add(FieldKind kind, int64_t cases, Position position, std::string_view text);
  /// The first of the values that are of another kind than all others, which are not texts, when
  /// there are such values and at most one in twenty is one.
  std::optional<Odd> odd() const;

 private:
  struct Entry {
    int64_t cases = 0;
    Position first;
    std::string text;
  };
  std::array<Entry, static_cast<size_t>(FieldKind::kText) + 1> kinds_;
};

}  // namespace workbench
