#include "workbench/pooling/imputations.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include "workbench/dataset/case_feed.h"
#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

constexpr const char* kImputationName = "imputation_";

/// How many cases the analysis counts in a chunk.
double casesOf(const CaseChunk& next) {
  const auto& chunk = static_cast<const CountedChunk&>(next);
  double cases = 0;
  for (ptrdiff_t row = 0; row < chunk.count; ++row) {
    if (chunk.weights == nullptr) {
      cases += 1;
      continue;
    }
    const double weight =
        chunk.caseCounts == nullptr ? roundedWeight(chunk.weights[row]) : chunk.weights[row];
    if (!IsSystemMissing(weight)) cases += weight;
  }
  return cases;
}

}  // namespace

std::optional<size_t> imputationPosition(ActiveDataset& dataset) {
  const std::vector<VarIndex>& splits = dataset.splitVariables();
  for (size_t i = splits.size(); i-- > 0;) {
    if (foldCase(dataset.declaration(splits[i]).name) != kImputationName) continue;
    if (dataset.variable(splits[i]).kind == ValueKind::kNumber) return i;
  }
  return std::nullopt;
}

ImputationCheck checkImputations(ActiveDataset& dataset, size_t position) {
  // Weighted cases of each imputation, by the values of the other split variables.
  std::map<std::vector<SplitValue>, std::map<double, double>> groups;
  const std::unique_ptr<CaseFeed> feed = dataset.openFeed();
  while (feed != nullptr) {
    const CaseChunk* chunk = feed->NextChunk();
    if (chunk == nullptr) break;
    if (chunk->groupEnd) continue;
    std::vector<SplitValue> others = dataset.currentSplit();
    const double number = std::floor(std::get<double>(others[position]) + 0.5);
    others.erase(others.begin() + static_cast<ptrdiff_t>(position));
    groups[others][number] += casesOf(*chunk);
  }
  ImputationCheck check;
  for (const auto& [others, sizes] : groups) {
    std::set<double> different;
    size_t imputations = 0;
    bool original = false;
    for (const auto& [number, cases] : sizes) {
      original = original || number == 0;
      if (!(number > 0)) continue;
      ++imputations;
      different.insert(cases);
    }
    check.imputations = std::max(check.imputations, imputations);
    check.originalMissing = check.originalMissing || !original;
    check.sizesDiffer = check.sizesDiffer || different.size() > 1;
  }
  return check;
}

}  // namespace workbench
