#include "workbench/bootstrap/sampled_results.h"

#include <utility>

#include "host/constants.h"

namespace workbench {
namespace {

/// What a result is known by in all tables of all runs on the same data.
std::string keyOf(const SampledResult& result) {
  std::string key;
  for (const LabelData& value : result.split) appendToKey(key, value.identity);
  appendToKey(key, result.about.subject);
  key += static_cast<char>('A' + static_cast<int>(result.quantity));
  if (result.about.member) appendToKey(key, result.about.member->identity);
  return key;
}

void addNames(const LabelData* label, std::vector<std::string>& names) {
  if (label == nullptr) return;
  names.insert(names.end(), label->variables.begin(), label->variables.end());
}

/// The number of a sample as its category has it; negative when it shows none.
int64_t sampleNumber(const LabelData* label) {
  if (label == nullptr || label->values.empty()) return -1;
  const auto* number = std::get_if<double>(&label->values.front().exact);
  return number == nullptr || !(*number >= 0) ? -1 : static_cast<int64_t>(*number);
}

}  // namespace

void SampledResults::makeRoom(size_t slots) {
  slots_ = slots;
  for (SampledResult& result : results_) result.values.resize(slots, kSystemMissing);
}

void SampledResults::add(const DocumentProcedure& procedure,
                         const std::function<std::optional<size_t>(int64_t)>& slotOf) {
  for (const auto& table : procedure.tables) {
    if (tableKindOf(table->title().key)) addTable(*table, slotOf);
  }
  for (SampledResult& result : results_) {
    result.about.subject = pairs_.fullest(result.about.subject);
  }
}

void SampledResults::addTable(const Table& table,
                              const std::function<std::optional<size_t>(int64_t)>& slotOf) {
  const ResultRows rows(table, EmptyCategories::kReadable);
  const size_t userSplits = rows.splitDimensions().size() - 1;
  if (splitDimensions_.empty()) {
    for (size_t i = 0; i < userSplits; ++i) splitDimensions_.push_back(rows.splitVariable(i));
  }
  for (size_t row = 0; row < rows.count(); ++row) {
    if (!rows.hasCells(row)) continue;
    const auto slot = slotOf(sampleNumber(rows.splitValue(row, userSplits)));
    if (!slot) continue;
    const ResultSubject subject = rows.subject(row);
    SampledResult result;
    for (size_t i = 0; i < userSplits; ++i) {
      const LabelData* value = rows.splitValue(row, i);
      result.split.push_back(value == nullptr ? LabelData() : *value);
    }
    addNames(subject.variable, result.variables);
    addNames(subject.variable2, result.variables);
    result.about = shownSubject(subject);
    store(rows, row, *slot, std::move(result));
  }
}

/// A quantity that stands in several rows, one for each method, is taken from the first that has
/// a value.
void SampledResults::store(const ResultRows& rows, size_t row, size_t slot, SampledResult wanted) {
  pairs_.learn(wanted.about.subject);
  const bool oneSample = rows.kind().design == Design::kOneSample;
  for (const Quantity quantity :
       {Quantity::kProportion, Quantity::kDifference, Quantity::kStandardError}) {
    // Of one sample and of single measurements the standard error belongs to the method or table.
    if (quantity == Quantity::kStandardError &&
        (oneSample || rows.kind().kind == ResultKind::kStatistics)) {
      continue;
    }
    if (rows.cell(row, quantity) == nullptr) continue;
    wanted.quantity = quantity;
    const auto [found, isNew] = byKey_.emplace(keyOf(wanted), results_.size());
    if (isNew) {
      results_.push_back(wanted);
      results_.back().values.assign(slots_, kSystemMissing);
    }
    SampledResult& result = results_[found->second];
    double& value = result.values[slot];
    if (IsSystemMissing(value)) value = rows.value(row, quantity);
  }
}

const SampledResult* SampledResults::find(const SampledResult& result) const {
  const auto found = byKey_.find(keyOf(result));
  return found == byKey_.end() ? nullptr : &results_[found->second];
}

}  // namespace workbench
