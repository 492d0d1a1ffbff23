/// A hash index over things that are kept elsewhere and known by their number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace workbench {

/// Finds numbers 0, 1, 2, ... by the hash of what they stand for. Open addressing, at most two
/// thirds full: 6 to 12 bytes for each number.
class NumberIndex {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;

  /// The number with that hash for which `matches(number)` is true, or kNone.
  template <typename Matches>
  uint32_t find(uint64_t hash, Matches matches) const {
    if (slots_.empty()) return kNone;
    for (size_t slot = start(hash); slots_[slot] != kNone; slot = next(slot)) {
      if (matches(slots_[slot])) return slots_[slot];
    }
    return kNone;
  }

  /// Makes room for one more number; `hashOf(number)` gives the hash of one that is there already.
  template <typename HashOf>
  void makeRoom(HashOf hashOf) {
    if (3 * (count_ + 1) <= 2 * slots_.size()) return;
    NumberIndex larger;
    larger.slots_.assign(slots_.empty() ? 16 : 2 * slots_.size(), kNone);
    for (const uint32_t number : slots_) {
      if (number != kNone) larger.insert(hashOf(number), number);
    }
    *this = std::move(larger);
  }

  /// Adds a number that is not there yet. There must be room.
  void insert(uint64_t hash, uint32_t number) noexcept {
    size_t slot = start(hash);
    while (slots_[slot] != kNone) slot = next(slot);
    slots_[slot] = number;
    ++count_;
  }

  void clear() noexcept {
    slots_.clear();
    count_ = 0;
  }

 private:
  size_t start(uint64_t hash) const { return (hash ^ (hash >> 32)) & (slots_.size() - 1); }
  size_t next(size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

  std::vector<uint32_t> slots_;  // their number is a power of two
  size_t count_ = 0;
};

}  // namespace workbench
