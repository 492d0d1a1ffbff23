#include "workbench/listing/listing.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include "host/data_source.h"
#include "workbench/dataset/case_feed.h"
#include "workbench/dataset/variable.h"
#include "workbench/listing/value_tally.h"
#include "workbench/text/collation.h"

namespace workbench {
namespace {

struct TextLess {
  bool operator()(std::string_view a, std::string_view b) const { return compareStrings(a, b) < 0; }
};

/// What is counted of one variable while the cases pass.
class VariableCounter {
 public:
  /// The variable outlives it. `valuesHeld` is how many different values it may keep count of.
  VariableCounter(VarIndex index, const ZELK_Variable& variable, size_t valuesHeld)
      : index_(index),
        variable_(variable),
        numbers_(kListedValues, valuesHeld),
        texts_(kListedValues, valuesHeld) {}

  void add(const CountedChunk& chunk) {
    const ColumnView& column = chunk.columns[index_];
    for (ptrdiff_t row = 0; row < chunk.count; ++row) {
      const double cases = chunk.caseCounts == nullptr ? 1.0 : chunk.caseCounts[row];
      add(column.words + row * column.stride, static_cast<int64_t>(cases));
    }
  }

  ListedVariable result() const {
    ListedVariable listed;
    listed.variable = index_;
    listed.missing = missing_;
    listed.hasMore = numbers_.hasMore() || texts_.hasMore();
    for (const auto& [value, count] : numbers_.smallest()) listed.values.push_back({value, count});
    for (const auto& [value, count] : texts_.smallest()) listed.values.push_back({value, count});
    return listed;
  }

 private:
  void add(const double* observation, int64_t count) {
    if (variable_.IsMissing(observation)) {
      missing_ += count;
    } else if (variable_.GetType() == 0) {
      numbers_.add(*observation, count);
    } else {
      const auto width = static_cast<size_t>(variable_.GetType());
      texts_.add(trimmed({reinterpret_cast<const char*>(observation), width}), count);
    }
  }

  VarIndex index_;
  const ZELK_Variable& variable_;
  ValueTally<double, std::less<>> numbers_;
  ValueTally<std::string, TextLess> texts_;
  int64_t missing_ = 0;
};

/// Data of many variables are read in several passes when their cases do not fit into memory
/// together, or would hardly: reading them again costs less than to spill them. Fewer variables
/// than that are read as any command reads them.
constexpr size_t kVariablesAtFirst = 4096;
constexpr size_t kFewVariables = 64;

/// Different values that the tallies of all variables read at a time may hold together.
constexpr size_t kValuesHeld = size_t{1} << 20U;

/// Of a command that was begun with these variables.
void listSome(ActiveDataset& dataset, const std::vector<VarIndex>& some,
              std::vector<ListedVariable>& listed) {
  const ProcedureDataSource source;
  std::vector<VariableCounter> counters;
  for (const VarIndex index : some) {
    counters.emplace_back(index, source.GetVariable(index), kValuesHeld / some.size());
  }
  if (const std::unique_ptr<CaseFeed> feed = dataset.openFeed()) {
    while (const CaseChunk* chunk = feed->NextChunk()) {
      for (VariableCounter& counter : counters) {
        counter.add(static_cast<const CountedChunk&>(*chunk));
      }
    }
  }
  for (const VariableCounter& counter : counters) listed.push_back(counter.result());
}

}  // namespace

std::vector<ListedVariable> listVariables(Session& session, const ListingSource& source) {
  ActiveDataset& dataset = *session.dataset;
  const auto all = static_cast<size_t>(dataset.variableCount());
  size_t most = source.mostVariables;
  size_t size = std::min(most, kVariablesAtFirst);
  std::vector<ListedVariable> listed;
  while (listed.size() < all && !dataset.failed()) {
    std::vector<VarIndex> some(std::min(size, all - listed.size()));
    std::iota(some.begin(), some.end(), static_cast<VarIndex>(listed.size()));
    if (some.size() <= kFewVariables) {
      dataset.beginCommand(some);
    } else if (!source.fitInMemory(some)) {
      most = size = some.size() / 2;
      continue;
    }
    listSome(dataset, some, listed);
    size = std::min(2 * size, most);
  }
  return listed;
}

}  // namespace workbench
