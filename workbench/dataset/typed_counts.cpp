#include "workbench/dataset/typed_counts.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "workbench/dataset/case_feed.h"
#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

/// Counts up to here, and their sums, are exact in double precision.
constexpr auto kMostCases = static_cast<uint64_t>(kAllWhole);

constexpr const char* kForms =
    "write 81/263 for one sample, 189/11034 104/11037 for two groups, or 59,6,16,80 for pairs "
    "(both, first only, second only, neither)";

[[noreturn]] void refuse(const std::string& text, const std::string& what) {
  throw std::invalid_argument(fmt::format("'{}': {}", text, what));
}

uint64_t readCount(const std::string& text, std::string_view part) {
  const bool isDigits = !part.empty() && std::all_of(part.begin(), part.end(),
                                                     [](char c) { return c >= '0' && c <= '9'; });
  if (!isDigits) refuse(text, fmt::format("'{}' is not a whole number; {}", part, kForms));
  uint64_t count = 0;
  const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), count);
  if (error != std::errc() || count > kMostCases) {
    refuse(text, fmt::format("{} is beyond 2^53, the largest number of cases", part));
  }
  return count;
}

/// The counts between separators.
std::vector<uint64_t> readParts(const std::string& text, char separator) {
  std::vector<uint64_t> counts;
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find(separator, start), text.size());
    counts.push_back(readCount(text, std::string_view(text).substr(start, end - start)));
    start = end + 1;
  }
  return counts;
}

struct Fraction {
  uint64_t successes;
  uint64_t trials;
};

Fraction readFraction(const std::string& text) {
  const std::vector<uint64_t> parts = readParts(text, '/');
  if (parts.size() != 2) refuse(text, kForms);
  const Fraction fraction{parts[0], parts[1]};
  if (fraction.trials == 0) refuse(text, "there are no cases");
  if (fraction.successes > fraction.trials) {
    refuse(text,
           fmt::format("{} successes are more than {} cases", fraction.successes, fraction.trials));
  }
  return fraction;
}

/// Adds the combination unless it does not occur.
void add(TypedCounts& counts, std::vector<double> values, uint64_t count) {
  if (count > 0) counts.cases.push_back({std::move(values), count});
}

/// Throws std::invalid_argument when all counts together are too many, or none.
void checkTotal(const TypedCounts& counts, const std::string& text) {
  uint64_t total = 0;
  for (const CountedCases& cases : counts.cases) total += cases.count;
  if (total == 0) refuse(text, "there are no cases");
  if (total > kMostCases) {
    refuse(text, fmt::format("{} cases are more than 2^53, the largest number of them", total));
  }
}

TypedCounts oneSample(const std::string& text) {
  const Fraction fraction = readFraction(text);
  TypedCounts counts{{"outcome"}, {}, {}};
  add(counts, {1}, fraction.successes);
  add(counts, {0}, fraction.trials - fraction.successes);
  counts.command =
      "PROPORTIONS /ONESAMPLE outcome TESTTYPES=ALL CITYPES=ALL /SUCCESS VALUE=LEVEL(1).";
  return counts;
}

TypedCounts twoGroups(const std::vector<std::string>& texts) {
  TypedCounts counts{{"outcome", "group"}, {}, {}};
  double group = 0;
  for (const std::string& text : texts) {
    const Fraction fraction = readFraction(text);
    group += 1;
    add(counts, {1, group}, fraction.successes);
    add(counts, {0, group}, fraction.trials - fraction.successes);
  }
  checkTotal(counts, texts[0] + " " + texts[1]);
  counts.command =
      "PROPORTIONS /INDEPENDENTSAMPLES outcome BY group SELECT=LEVEL(1 2) TESTTYPES=ALL "
      "CITYPES=ALL /SUCCESS VALUE=LEVEL(1).";
  return counts;
}

TypedCounts pairs(const std::string& text) {
  const std::vector<uint64_t> cells = readParts(text, ',');
  if (cells.size() != 4) {
    refuse(text, fmt::format("there are {} counts in place of four; {}", cells.size(), kForms));
  }
  TypedCounts counts{{"first", "second"}, {}, {}};
  add(counts, {1, 1}, cells[0]);
  add(counts, {1, 0}, cells[1]);
  add(counts, {0, 1}, cells[2]);
  add(counts, {0, 0}, cells[3]);
  checkTotal(counts, text);
  counts.command =
      "PROPORTIONS /PAIREDSAMPLES first second TESTTYPES=ALL CITYPES=ALL /SUCCESS VALUE=LEVEL(1).";
  return counts;
}

/// All cases in one chunk.
class CountsFeed final : public CaseFeed {
 public:
  explicit CountsFeed(const TypedCounts& counts) : columns_(counts.variables.size()) {
    for (const CountedCases& cases : counts.cases) {
      for (size_t i = 0; i < columns_.size(); ++i) columns_[i].push_back(cases.values[i]);
      weights_.push_back(static_cast<double>(cases.count));
    }
    for (const std::vector<double>& column : columns_) views_.push_back({column.data(), 1});
    chunk_.columns = views_.data();
    chunk_.weights = weights_.data();
    chunk_.caseCounts = weights_.data();
    chunk_.count = static_cast<ptrdiff_t>(weights_.size());
  }

  const CaseChunk* NextChunk() override { return std::exchange(done_, true) ? nullptr : &chunk_; }

 private:
  std::vector<std::vector<double>> columns_;
  std::vector<double> weights_;
  std::vector<ColumnView> views_;
  CountedChunk chunk_;
  bool done_ = false;
};

}  // namespace

TypedCounts readTypedCounts(const std::vector<std::string>& texts) {
  if (texts.size() == 1 && texts[0].find(',') != std::string::npos) return pairs(texts[0]);
  if (texts.size() == 1) return oneSample(texts[0]);
  if (texts.size() == 2) return twoGroups(texts);
  throw std::invalid_argument(fmt::format("{} counts are too many; {}", texts.size(), kForms));
}

CountsDataset::CountsDataset(TypedCounts counts) : counts_(std::move(counts)) {
  for (const std::string& name : counts_.variables) {
    variables_.emplace_back().name = name;
    names_.add(name);
  }
  for (const CountedCases& cases : counts_.cases) cases_ += static_cast<int64_t>(cases.count);
}

const Variable& CountsDataset::declaration(VarIndex index) const {
  return variables_[static_cast<size_t>(index)];
}

std::unique_ptr<CaseFeed> CountsDataset::openFeed() {
  return std::make_unique<CountsFeed>(counts_);
}

}  // namespace workbench
