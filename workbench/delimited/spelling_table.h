/// The different fields of a column, each with a code.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/counting/mixing.h"
#include "workbench/delimited/delimited_data.h"

namespace workbench {

/// Fields are told apart by their bytes as they stand between delimiters, so that nothing has to be
/// understood to give a row its code. None holds a NUL. Code 0 is the empty field.
class SpellingTable {
 public:
  SpellingTable();

  /// Eight bytes from `begin` on may be read. `place` tells where the field stands; it is asked for
  /// new fields only.
  template <class Place>
  uint32_t codeOf(const char* begin, size_t length, Place place) {
    if (length > sizeof(uint64_t)) return find(begin, length, hashOf(begin, length), place);
    const uint64_t key = keyOf(begin, length);
    const uint64_t hash = mixed(key);
    const Recent& recent = recent_[hash >> recentShift_];
    if (recent.key == key) return recent.code;
    const uint32_t code = find(begin, length, hash, place);
    recent_[hash >> recentShift_] = {key, code};  // of another size, perhaps, than before
    return code;
  }

  size_t size() const { return ends_.size(); }
  std::string_view operator[](size_t code) const {
    const size_t begin = code == 0 ? 0 : ends_[code - 1];
    return std::string_view(bytes_).substr(begin, ends_[code] - begin);
  }
  DelimitedPlace place(size_t code) const { return {parts_[code], lines_[code]}; }
  size_t memory() const;
  void clear();

 private:
  struct Recent {
    uint64_t key = 0;  // the bytes of a short field; those of the empty one are code 0
    uint32_t code = 0;
  };
  struct Slot {
    uint32_t hash = 0;
    uint32_t code = kFree;
  };
  static constexpr uint32_t kFree = 0xFFFFFFFF;

  /// The bytes of a short field, first one lowest. As there are no NULs, no length is needed.
  static uint64_t keyOf(const char* begin, size_t length) {
    static_assert(std::endian::native == std::endian::little);
    uint64_t word = 0;
    std::memcpy(&word, begin, sizeof word);
    return length == 0 ? 0 : word << (64 - 8 * length) >> (64 - 8 * length);
  }
  /// Of a field longer than a word.
  static uint64_t hashOf(const char* begin, size_t length);
  uint64_t hashOf(uint32_t code) const;
  void put(uint32_t code, uint64_t hash);
  void makeRecent();

  template <class Place>
  uint32_t find(const char* begin, size_t length, uint64_t hash, Place place) {
    size_t at = hash & (slots_.size() - 1);
    const auto tag = static_cast<uint32_t>(hash >> 20U);
    for (; slots_[at].code != kFree; at = (at + 1) & (slots_.size() - 1)) {
      if (slots_[at].hash == tag && (*this)[slots_[at].code] == std::string_view(begin, length)) {
        return slots_[at].code;
      }
    }
    return insert({begin, length}, hash, place());
  }
  uint32_t insert(std::string_view field, uint64_t hash, DelimitedPlace place);
  void grow();

  // The fields met last, by the first bits of their hashes. There are few while there are few
  // different fields: of most of ten thousand columns.
  std::vector<Recent> recent_;
  unsigned recentShift_ = 0;
  std::vector<Slot> slots_;
  std::string bytes_;
  std::vector<uint64_t> ends_;
  std::vector<uint32_t> parts_;
  std::vector<uint64_t> lines_;
};

}  // namespace workbench
