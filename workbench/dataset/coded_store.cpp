// Cases in memory, in split order; chunks are decoded as they are asked for.
#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "workbench/dataset/case_store.h"

namespace workbench {
namespace {

/// Decoded chunks of all columns should stay in the processor's cache. Those of many columns or of
/// wide texts do not, and hold some dozens of cases if they may.
constexpr size_t kChunkBytes = size_t{256} << 10;
constexpr size_t kMostChunkBytes = size_t{16} << 20;

size_t casesOfChunk(size_t caseBytes) {
  const size_t least = std::clamp<size_t>(kMostChunkBytes / caseBytes, 1, 64);
  return std::clamp<size_t>(kChunkBytes / caseBytes, least, static_cast<size_t>(kMostChunkCases));
}

/// A split group: its rows end before `end`, those that are combinations before `combinationsEnd`.
struct Group {
  size_t combinationsEnd = 0;
  size_t end = 0;
};

struct StoredCases {
  CodedCases cases;  // in split order; inside a group the combinations come first
  std::vector<VarIndex> variables;
  std::vector<size_t> split;
  std::vector<Group> groups;                  // without split variables one, with all rows
  std::vector<int32_t> words;                 // by column: of an observation
  std::vector<std::vector<double>> observed;  // of string columns: the values as observations
  CaseColumn weight;
  bool weighted = false;
};

SplitValue splitValue(const CaseColumn& column, uint32_t code) {
  if (column.isString()) return std::string(column.texts[code]);
  return column.numbers[code];
}

/// By code: the place of the value in the order of split values.
std::vector<uint32_t> ranksOf(const CaseColumn& column) {
  std::vector<SplitValue> values;
  for (size_t i = 0; i < column.valueCount(); ++i) {
    values.push_back(splitValue(column, static_cast<uint32_t>(i)));
  }
  std::vector<uint32_t> order(values.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&](uint32_t a, uint32_t b) { return compareSplitValues(values[a], values[b]) < 0; });
  std::vector<uint32_t> ranks(order.size());
  for (size_t i = 0; i < order.size(); ++i) ranks[order[i]] = static_cast<uint32_t>(i);
  return ranks;
}

/// Sorts the rows by one column, keeping the order of equal ones.
void sortBy(const CaseColumn& column, std::vector<uint32_t>& order) {
  const std::vector<uint32_t> ranks = ranksOf(column);
  std::vector<uint32_t> starts(ranks.size() + 1, 0);
  std::vector<uint32_t> sorted(order.size());
  column.codes.visit([&](const auto& codes) {
    for (const auto code : codes) ++starts[ranks[code] + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    for (const uint32_t row : order) sorted[starts[ranks[codes[row]]]++] = row;
  });
  order = std::move(sorted);
}

void sortIntoGroups(StoredCases& stored) {
  CodedCases& cases = stored.cases;
  if (cases.rows > std::numeric_limits<uint32_t>::max()) {
    throw std::length_error("too many cases to hold in memory");
  }
  for (const size_t position : stored.split) cases.columns[position].encode();
  std::vector<uint32_t> order(cases.rows);
  std::iota(order.begin(), order.end(), 0U);
  for (size_t i = stored.split.size(); i-- > 0;) sortBy(cases.columns[stored.split[i]], order);
  const size_t combinations = cases.counts.size();
  std::vector<double> counts;
  std::vector<double> weightSums;
  counts.reserve(combinations);
  const auto sameGroup = [&](uint32_t a, uint32_t b) {
    return std::all_of(stored.split.begin(), stored.split.end(), [&](size_t position) {
      return cases.columns[position].codes[a] == cases.columns[position].codes[b];
    });
  };
  for (size_t i = 0; i < order.size(); ++i) {
    const bool counted = order[i] < combinations;
    if (counted) counts.push_back(cases.counts[order[i]]);
    if (counted && !cases.weightSums.empty()) weightSums.push_back(cases.weightSums[order[i]]);
    if (i == 0 || !sameGroup(order[i - 1], order[i])) stored.groups.push_back({i, i});
    stored.groups.back().end = i + 1;
    if (counted) stored.groups.back().combinationsEnd = i + 1;
  }
  cases.counts = std::move(counts);
  cases.weightSums = std::move(weightSums);
  if (std::is_sorted(order.begin(), order.end())) return;
  for (CaseColumn& column : cases.columns) column.permute(order);
}

/// A string column's different values, padded to whole words.
std::vector<double> observations(const CaseColumn& column, int32_t words) {
  std::vector<double> padded(column.texts.size() * static_cast<size_t>(words));
  for (size_t i = 0; i < column.texts.size(); ++i) {
    writeObservation(column.texts[i], words, padded.data() + i * static_cast<size_t>(words));
  }
  return padded;
}

void decodeNumbers(const CaseColumn& column, size_t begin, size_t count, double* out) {
  if (!column.coded) {
    std::copy_n(column.numbers.data() + begin, count, out);
    return;
  }
  const double* values = column.numbers.data();
  column.codes.visit([&](const auto& codes) {
    const auto* from = codes.data() + begin;
    for (size_t i = 0; i < count; ++i) out[i] = values[from[i]];
  });
}

void decodeTexts(const CaseColumn& column, const std::vector<double>& values, size_t words,
                 size_t begin, size_t count, double* out) {
  column.codes.visit([&](const auto& codes) {
    const auto* from = codes.data() + begin;
    for (size_t i = 0; i < count; ++i) {
      std::copy_n(values.data() + from[i] * words, words, out + i * words);
    }
  });
}

class CodedFeed final : public CaseFeed {
 public:
  CodedFeed(std::shared_ptr<const StoredCases> stored, ColumnViews views,
            std::shared_ptr<SplitCursor> cursor, FeedObserver& observer);

  const CaseChunk* NextChunk() override;

 private:
  const CaseChunk* cases(size_t end);
  const CaseChunk* marker();
  const CaseChunk* finish(bool complete);
  void decodeWeights(size_t count);
  void enterGroup();

  std::shared_ptr<const StoredCases> stored_;
  ColumnViews views_;
  std::shared_ptr<SplitCursor> cursor_;
  FeedObserver& observer_;
  std::vector<std::vector<double>> buffers_;
  std::vector<double> weights_;
  std::vector<double> rawWeights_;
  CountedChunk chunk_;
  size_t chunkCases_ = 1;
  size_t row_ = 0;
  size_t combination_ = 0;
  size_t group_ = 0;
  bool done_ = false;
};

CodedFeed::CodedFeed(std::shared_ptr<const StoredCases> stored, ColumnViews views,
                     std::shared_ptr<SplitCursor> cursor, FeedObserver& observer)
    : stored_(std::move(stored)),
      views_(std::move(views)),
      cursor_(std::move(cursor)),
      observer_(observer),
      buffers_(stored_->variables.size()) {
  const auto words = static_cast<size_t>(
      std::accumulate(stored_->words.begin(), stored_->words.end(), int32_t{2}));
  chunkCases_ = casesOfChunk(words * sizeof(double));
  for (size_t i = 0; i < buffers_.size(); ++i) {
    buffers_[i].resize(chunkCases_ * static_cast<size_t>(stored_->words[i]));
    views_[stored_->variables[i]] = {buffers_[i].data(), stored_->words[i]};
  }
  weights_.resize(chunkCases_);
  rawWeights_.resize(chunkCases_);
  chunk_.columns = views_.data();
}

const CaseChunk* CodedFeed::NextChunk() {
  if (done_ || !observer_.mayContinue()) return finish(false);
  const std::vector<Group>& groups = stored_->groups;
  if (group_ == groups.size()) return finish(true);
  const Group& group = groups[group_];
  if (row_ == group.end) {
    if (!stored_->split.empty()) return marker();
    ++group_;
    return finish(true);
  }
  if (row_ == (group_ == 0 ? 0 : groups[group_ - 1].end)) enterGroup();
  const size_t end = row_ < group.combinationsEnd ? group.combinationsEnd : group.end;
  return cases(std::min(end, row_ + chunkCases_));
}

void CodedFeed::enterGroup() {
  if (stored_->split.empty()) return;
  cursor_->own.clear();
  for (const size_t position : stored_->split) {
    const CaseColumn& column = stored_->cases.columns[position];
    cursor_->own.push_back(splitValue(column, column.codes[row_]));
  }
  cursor_->values = &cursor_->own;
}

const CaseChunk* CodedFeed::cases(size_t end) {
  const size_t count = end - row_;
  for (size_t i = 0; i < buffers_.size(); ++i) {
    const CaseColumn& column = stored_->cases.columns[i];
    if (column.isString()) {
      decodeTexts(column, stored_->observed[i], static_cast<size_t>(stored_->words[i]), row_, count,
                  buffers_[i].data());
    } else {
      decodeNumbers(column, row_, count, buffers_[i].data());
    }
  }
  chunk_.count = static_cast<ptrdiff_t>(count);
  chunk_.groupEnd = false;
  decodeWeights(count);
  row_ = end;
  return &chunk_;
}

/// A combination weighs as much as its cases together.
void CodedFeed::decodeWeights(size_t count) {
  const bool counted = row_ < stored_->groups[group_].combinationsEnd;
  chunk_.weights = stored_->weighted || counted ? weights_.data() : nullptr;
  chunk_.caseCounts = counted ? stored_->cases.counts.data() + combination_ : nullptr;
  chunk_.rawWeights = counted && stored_->weighted ? rawWeights_.data() : nullptr;
  if (stored_->weighted) decodeNumbers(stored_->weight, row_, count, weights_.data());
  if (!counted) return;
  const std::vector<double>& sums = stored_->cases.weightSums;
  for (size_t i = 0; i < count; ++i) {
    const double cases = chunk_.caseCounts[i];
    if (!stored_->weighted) {
      weights_[i] = cases;
      continue;
    }
    const double raw = weights_[i];
    const double rounded = roundedWeight(raw);
    rawWeights_[i] = raw == kSystemMissing ? 0.0 : raw * cases;
    if (!sums.empty()) rawWeights_[i] = sums[combination_ + i];
    weights_[i] = rounded == kSystemMissing ? kSystemMissing : rounded * cases;
  }
  combination_ += count;
}

const CaseChunk* CodedFeed::marker() {
  ++group_;
  chunk_.count = 0;
  chunk_.groupEnd = true;
  return &chunk_;
}

const CaseChunk* CodedFeed::finish(bool complete) {
  if (complete && !done_) observer_.passComplete(stored_->cases.cases);
  done_ = true;
  return nullptr;
}

class CodedStore final : public CaseStore {
 public:
  explicit CodedStore(std::shared_ptr<StoredCases> stored) : stored_(std::move(stored)) {
    for (const CaseColumn& column : stored_->cases.columns) widths_.push_back(column.width());
  }
  int32_t width(size_t column) const override { return widths_[column]; }
  int64_t rows() const override { return static_cast<int64_t>(stored_->cases.rows); }
  std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                     FeedObserver& observer) override {
    return std::make_unique<CodedFeed>(stored_, std::move(views), std::move(cursor), observer);
  }

 private:
  std::shared_ptr<const StoredCases> stored_;
  std::vector<int32_t> widths_;
};

/// Weights as cases carry them, in a column of their own.
void takeWeights(StoredCases& stored, const Variable& entry) {
  stored.weighted = true;
  stored.weight = std::move(stored.cases.columns.back());
  stored.cases.columns.pop_back();
  if (stored.weight.isString()) {
    stored.weight = CaseColumn();
    stored.weight.coded = false;
    stored.weight.numbers.assign(stored.cases.rows, kSystemMissing);
  }
  for (double& value : stored.weight.numbers) value = normalWeight(entry, value);
}

}  // namespace

std::unique_ptr<CaseStore> makeCodedStore(CodedCases cases, const CasePlan& plan) {
  auto stored = std::make_shared<StoredCases>();
  stored->cases = std::move(cases);
  stored->variables = plan.variables;
  stored->split = plan.split;
  if (plan.split.empty()) {
    stored->groups.push_back({stored->cases.counts.size(), stored->cases.rows});
  } else {
    sortIntoGroups(*stored);
  }
  if (plan.weight != nullptr) takeWeights(*stored, *plan.weight);
  stored->observed.resize(stored->cases.columns.size());
  for (size_t i = 0; i < stored->cases.columns.size(); ++i) {
    const CaseColumn& column = stored->cases.columns[i];
    const int32_t width = column.width();
    stored->words.push_back(ObsLength(width));
    if (column.isString()) stored->observed[i] = observations(column, stored->words.back());
  }
  return std::make_unique<CodedStore>(std::move(stored));
}

}  // namespace workbench
