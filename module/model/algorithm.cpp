#include "module/model/algorithm.h"

#include <utility>

#include "host/distributions.h"
#include "module/model/success_rule.h"
#include "module/model/texts.h"

namespace proportions {

PRPAlgorithm::PRPAlgorithm(ProcedureDataSource& source, BpProcedure& output,
                           const PRPValidSpecs& record)
    : dataSource(&source),
      procedure(&output),
      specs(&record),
      varValidSpecs(record.variableSpecs()),
      settings(record.settings()),
      weightVarIndex(source.GetWeightVarIndex()),
      splitFile(source.GetNSplitVars() != 0),
      alpha(1.0 - settings.ciLevel / 100.0) {
  inputMessages.emplace(source);
  messages.emplace();
  messages->SetCommandName(texts::kCommandName);
  messages->SetProcedureTitle(texts::kProcedureTitle);
  if (splitFile) splitsAsRows = !source.SplitLayoutSeparate();
  decideAggregation();
  if (needAggregation) findPoolingVariable();
}

/// Groups that share a table share its row labels, so what labels a row must be gathered from all
/// groups when it depends on the data. The first test variable decides for all: one SUCCESS rule
/// covers the command.
void PRPAlgorithm::decideAggregation() {
  if (!splitsAsRows || settings.testVarInfo.empty()) return;
  const SuccessRuleRow* rule = findRule(settings.testVarInfo.front().rule);
  needSuccessAggregation = rule != nullptr && rule->dependsOnData();
  needSelectAggregation =
      settings.groupVarIndex >= 0 && settings.groupInfo.rule == SuccessRule::kMidpoint;
  needAggregation = needSuccessAggregation || needSelectAggregation;
}

/// The split variable that numbers resamples or imputations, and the other ones. When both kinds
/// occur, the later one in split order wins and both flags stay set.
void PRPAlgorithm::findPoolingVariable() {
  std::vector<VarIndex> others;
  const int32_t count = dataSource->GetNSplitVars();
  for (int32_t position = 0; position < count; ++position) {
    const VarIndex index = dataSource->GetSplitVarIndex(position);
    const ZELK_Variable& variable = dataSource->GetVariable(index);
    const bool numeric = variable.GetType() == 0;
    const ZelkVarName name = variable.GetName();
    const ZelkVarName upName = variable.GetUpName();
    if (numeric && name == "$bootstrap_split") {
      poolingVarIndex = index;
      bootstrapping = true;
      QBOOTSTRAPPING();
    } else if (numeric && upName == "IMPUTATION_") {
      poolingVarIndex = index;
      multipleImputation = true;
    } else {
      others.push_back(index);
    }
  }
  if (poolingVarIndex >= 0) userSplitIndices = std::move(others);
}

bool PRPAlgorithm::computeCriticalValue() {
  nAll = nValid = nInvalid = 0;
  wAll = wValid = wInvalid = 0.0;
  zCrit = MCDistFun::IdfStdNorm(settings.ciLevel / 200.0 + 0.5);
  return true;
}

ListedVariable PRPAlgorithm::firstListVariable(int32_t position) const {
  const auto i = static_cast<size_t>(position);
  return {settings.testVarIndices[i], settings.testVarInfo[i], *testVarCats[i],
          aggregation == nullptr ? nullptr : &aggregation->first[i]};
}

ListedVariable PRPAlgorithm::secondListVariable(int32_t position) const {
  if (settings.secondVarIndices.empty()) return firstListVariable(position);
  const auto i = static_cast<size_t>(position);
  return {settings.secondVarIndices[i], settings.secondVarInfo[i], *secondVarCats[i],
          aggregation == nullptr ? nullptr : &aggregation->second[i]};
}

Grouping PRPAlgorithm::grouping() const {
  return {settings.groupVarIndex, settings.groupInfo, *groupCats,
          aggregation == nullptr ? nullptr : &aggregation->midPoints};
}

}  // namespace proportions
