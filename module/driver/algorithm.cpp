#include "module/driver/algorithm.h"

#include <utility>

#include "host/distributions.h"
#include "module/output/texts.h"

namespace proportions {

PRPAlgorithm::PRPAlgorithm(ProcedureDataSource& source, BpProcedure& output,
                           const PRPValidSpecs& record)
    : dataSource(&source),
      procedure(&output),
      specs(&record),
      varValidSpecs(record.variableSpecs()),
      modelType(record.modelType()),
      testVarIndices(record.testVarIndices()),
      testVarInfo(record.testVarInfo()),
      secondVarIndices(record.secondVarIndices()),
      secondVarInfo(record.secondVarInfo()),
      testValue(record.testValue()),
      orderedPair(record.orderedPairs()),
      groupVarIndex(record.groupVarIndex()),
      groupInfo(record.groupInfo()),
      ciLevel(record.confidenceLevel()),
      testTypes(record.testTypes()),
      ciTypes(record.ciTypes()),
      ignoreCase(record.ignoreCase()),
      scopeAnalysis(record.scopeAnalysis()),
      userMissingIncluded(record.userMissingIncluded()),
      printUpperCase(record.printUpperCase()),
      printCategoryOrder(record.printCategoryOrder()),
      weightVarIndex(source.GetWeightVarIndex()),
      splitFile(source.GetNSplitVars() != 0),
      alpha(1.0 - ciLevel / 100.0) {
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
  if (!splitsAsRows || testVarInfo.empty()) return;
  const int32_t rule = testVarInfo.front().rule;
  needSuccessAggregation = rule == kFirst || rule == kLast || rule == kMidpoint;
  needSelectAggregation = groupVarIndex >= 0 && groupInfo.rule == kMidpoint;
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
  zCrit = MCDistFun::IdfStdNorm(ciLevel / 200.0 + 0.5);
  return true;
}

VarIndex PRPAlgorithm::secondVariable(int32_t position) const {
  return secondVarIndices.empty() ? testVarIndices[position] : secondVarIndices[position];
}

}  // namespace proportions
