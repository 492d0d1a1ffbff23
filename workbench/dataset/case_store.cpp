#include "workbench/dataset/case_store.h"

#include <cmath>

#include "workbench/values/whole_numbers.h"

namespace workbench {
namespace {

/// The sum of all weights that an analysis uses.
double totalWeight(const CodedCases& cases, const Variable& entry) {
  const CaseColumn& column = cases.columns.back();
  double total = 0;
  for (size_t row = 0; row < cases.rows && !column.isString(); ++row) {
    const double weight = roundedWeight(normalWeight(entry, column.number(row)));
    if (weight == kSystemMissing) continue;
    total += weight * (row < cases.counts.size() ? cases.counts[row] : 1.0);
  }
  return total;
}

}  // namespace

std::unique_ptr<CaseStore> keepCases(CodedCases cases, CaseSource& source, const CasePlan& plan,
                                     EngineHolder& workspace) {
  // Sums of that size depend on the order of the cases, which is that of the file.
  if (cases.complete && !cases.counts.empty() && plan.weight != nullptr &&
      !(totalWeight(cases, *plan.weight) < kAllWhole)) {
    CaseRequest request = plan.request;
    request.collapse = CollapseMode::kNever;
    cases = source.read(request);
  }
  if (cases.complete) return makeCodedStore(std::move(cases), plan);
  std::vector<ValueKind> kinds;
  for (const CaseColumn& column : cases.columns) kinds.push_back(column.kind);
  return makeSpilledStore(source, plan, kinds, cases.cases, workspace);
}

}  // namespace workbench
