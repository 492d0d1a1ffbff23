#include "workbench/listing/listing.h"

#include <memory>
#include <numeric>

#include "host/data_source.h"
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
  VariableCounter(VarIndex index, const ZELK_Variable& variable)
      : index_(index), variable_(variable) {}

  void add(const Case& aCase, int64_t count) {
    const double* observation = aCase.Obs(index_);
    if (variable_.IsMissing(observation)) {
      missing_ += count;
    } else if (variable_.GetType() == 0) {
      numbers_.add(*observation, count);
    } else {
      const auto width = static_cast<size_t>(variable_.GetType());
      texts_.add(trimmed({reinterpret_cast<const char*>(observation), width}), count);
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
  VarIndex index_;
  const ZELK_Variable& variable_;
  ValueTally<double, std::less<>> numbers_{kListedValues};
  ValueTally<std::string, TextLess> texts_{kListedValues};
  int64_t missing_ = 0;
};

}  // namespace

std::vector<ListedVariable> listVariables(Session& session) {
  std::vector<VarIndex> all(static_cast<size_t>(session.dataset->variableCount()));
  std::iota(all.begin(), all.end(), 0);
  session.dataset->beginCommand(all);
  ProcedureDataSource source;
  std::vector<VariableCounter> counters;
  for (const VarIndex index : all) counters.emplace_back(index, source.GetVariable(index));
  const std::unique_ptr<ZELK_InputCaseIterator> cases(source.MakeIterator());
  if (cases != nullptr) {
    const auto& weights = static_cast<const ProcDSIterator&>(*cases);
    while (const Case* aCase = cases->NextCase()) {
      const auto count = static_cast<int64_t>(weights.Weight());
      for (VariableCounter& counter : counters) counter.add(*aCase, count);
    }
  }
  std::vector<ListedVariable> listed;
  for (const VariableCounter& counter : counters) listed.push_back(counter.result());
  return listed;
}

}  // namespace workbench
