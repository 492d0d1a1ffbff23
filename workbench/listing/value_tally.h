/// How often each of the smallest values occurs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace workbench {

/// Counts the smallest values of a column, whatever the number of its values, in bounded memory:
/// values that cannot be among the smallest are forgotten. `Less` is a strict order.
template <typename Value, typename Less>
class ValueTally {
 public:
  using Counts = std::vector<std::pair<Value, int64_t>>;

  /// Keeps the counts of the `kept` smallest values; `held` is how many different ones are counted
  /// until the large ones are forgotten, if it is well above that.
  ValueTally(size_t kept, size_t held)
      : kept_(kept), held_(std::clamp(held, 2 * kept, kMostValues)) {}

  template <typename Key>
  void add(const Key& value, int64_t count) {
    const auto found = counts_.find(Value(value));
    if (found != counts_.end()) {
      found->second += count;
      return;
    }
    if (forgot_ && !Less()(value, largest_)) return;
    counts_.emplace(value, count);
    if (counts_.size() > held_) forget();
  }

  /// The smallest values in order.
  Counts smallest() const {
    Counts sorted(counts_.begin(), counts_.end());
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return Less()(a.first, b.first); });
    if (sorted.size() > kept_) sorted.resize(kept_);
    return sorted;
  }

  /// True when there are more values than are kept.
  bool hasMore() const { return forgot_ || counts_.size() > kept_; }

 private:
  static constexpr size_t kMostValues = 4096;

  void forget() {
    Counts sorted = smallest();
    largest_ = sorted.back().first;
    counts_ = {sorted.begin(), sorted.end()};
    forgot_ = true;
  }

  size_t kept_;
  size_t held_;
  std::unordered_map<Value, int64_t> counts_;
  Value largest_{};  ///< of those that are kept, once others were forgotten
  bool forgot_ = false;
};

}  // namespace workbench
