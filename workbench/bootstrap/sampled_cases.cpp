#include "workbench/bootstrap/sampled_cases.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/constants.h"
#include "workbench/dataset/case_feed.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// Beside its key and count, what a map's entry takes.
constexpr size_t kEntryBytes = 96;

struct BytesHash {
  using is_transparent = void;
  size_t operator()(std::string_view bytes) const { return std::hash<std::string_view>()(bytes); }
};

/// Counts the cases of one group by their bytes.
class GroupCounter {
 public:
  explicit GroupCounter(const std::vector<int32_t>& words)
      : words_(words), keyWords_(std::accumulate(words.begin(), words.end(), size_t{1})) {}

  /// The key is filled by the caller: the observations side by side, then the weight.
  double* key() { return key_.data(); }
  void add(int64_t cases) {
    const std::string_view bytes(reinterpret_cast<const char*>(key_.data()),
                                 keyWords_ * sizeof(double));
    const auto found = counts_.find(bytes);
    if (found != counts_.end()) {
      found->second += cases;
    } else {
      counts_.emplace(std::string(bytes), cases);
    }
  }
  size_t bytes() const { return counts_.size() * (keyWords_ * sizeof(double) + kEntryBytes); }

  /// The group in its final order; the counter is empty then.
  CaseGroup finish(std::vector<SplitValue> split, const std::vector<bool>& isText) {
    std::vector<const std::pair<const std::string, int64_t>*> rows;
    rows.reserve(counts_.size());
    for (const auto& entry : counts_) rows.push_back(&entry);
    std::sort(rows.begin(), rows.end(), [&](const auto* a, const auto* b) {
      return precedes(a->first.data(), b->first.data(), isText);
    });
    CaseGroup group;
    group.split = std::move(split);
    group.rows = rows.size();
    for (const int32_t words : words_) {
      group.columns.emplace_back().reserve(rows.size() * static_cast<size_t>(words));
    }
    for (const auto* row : rows) {
      const char* at = row->first.data();
      for (size_t i = 0; i < words_.size(); ++i) {
        for (int32_t word = 0; word < words_[i]; ++word, at += sizeof(double)) {
          group.columns[i].push_back(numberAt(at));
        }
      }
      group.weights.push_back(numberAt(at));
      group.counts.push_back(row->second);
    }
    counts_.clear();
    return group;
  }

  void makeRoom() { key_.resize(keyWords_); }
  bool empty() const { return counts_.empty(); }

 private:
  static double numberAt(const char* bytes) {
    double number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
  }
  bool precedes(const char* a, const char* b, const std::vector<bool>& isText) const {
    for (size_t i = 0; i < words_.size(); ++i) {
      const size_t size = static_cast<size_t>(words_[i]) * sizeof(double);
      if (isText[i]) {
        if (const int order = std::memcmp(a, b, size); order != 0) return order < 0;
      } else if (numberAt(a) != numberAt(b)) {
        return numberAt(a) < numberAt(b);
      }
      a += size;
      b += size;
    }
    return numberAt(a) < numberAt(b);
  }

  const std::vector<int32_t>& words_;
  size_t keyWords_;
  std::vector<double> key_;
  std::unordered_map<std::string, int64_t, BytesHash, std::equal_to<>> counts_;
};

/// The weight of one case of a row that the analysis uses; missing when it is dropped.
double weightOfOne(const CountedChunk& chunk, size_t row) {
  if (chunk.weights == nullptr) return 1.0;
  const double weight = chunk.weights[row];
  if (chunk.caseCounts == nullptr) return roundedWeight(weight);
  return IsSystemMissing(weight) ? weight : weight / chunk.caseCounts[row];
}

[[noreturn]] void refuseSize(size_t memoryLimit) {
  throw DataError(fmt::format(
      "--bootstrap: the different cases of the command's variables take more than {} MiB; name "
      "fewer variables, or round the continuous ones in a --query.",
      memoryLimit >> 20));
}

}  // namespace

size_t SampledCases::rows() const {
  size_t all = 0;
  for (const CaseGroup& group : groups) all += group.rows;
  return all;
}

SampledCases sampledCases(ActiveDataset& dataset, const std::vector<VarIndex>& variables,
                          size_t memoryLimit) {
  SampledCases cases;
  cases.variables = variables;
  std::vector<bool> isText;
  for (const VarIndex index : variables) {
    const Variable& variable = dataset.variable(index);
    cases.words.push_back(wordsOf(variable));
    isText.push_back(variable.isString());
  }
  GroupCounter counter(cases.words);
  counter.makeRoom();
  size_t held = 0;
  const auto endGroup = [&] {
    if (counter.empty()) return;
    held += counter.bytes();
    cases.groups.push_back(counter.finish(dataset.currentSplit(), isText));
  };
  const std::unique_ptr<CaseFeed> feed = dataset.openFeed();
  while (feed != nullptr) {
    const CaseChunk* next = feed->NextChunk();
    if (next == nullptr) break;
    if (next->groupEnd) endGroup();
    const auto& chunk = static_cast<const CountedChunk&>(*next);
    for (ptrdiff_t row = 0; row < chunk.count; ++row) {
      double* key = counter.key();
      for (size_t i = 0; i < variables.size(); ++i) {
        const ColumnView& column = chunk.columns[variables[i]];
        key = std::copy_n(column.words + row * column.stride, cases.words[i], key);
      }
      *key = weightOfOne(chunk, static_cast<size_t>(row));
      counter.add(chunk.caseCounts == nullptr ? 1 : static_cast<int64_t>(chunk.caseCounts[row]));
    }
    if (held + counter.bytes() > memoryLimit) refuseSize(memoryLimit);
  }
  if (dataset.failed()) throw DataError(dataset.failure());
  endGroup();
  return cases;
}

}  // namespace workbench
