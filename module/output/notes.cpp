#include "module/output/notes.h"

#include "module/output/result_table.h"

namespace proportions {
namespace {

constexpr int kMissingSection = 4;
constexpr int kWeightSection = 0;

}  // namespace

void addProcedureNotes(const PRPValidSpecs& specs) {
  AddNotes(
      kMissingSection, keyText(texts::kDefinitionOfMissing),
      keyText(specs.userMissingIncluded() ? texts::kMissingIncluded : texts::kMissingExcluded));
  AddNotes(kMissingSection, keyText(texts::kCasesUsed),
           keyText(specs.scopeAnalysis() ? texts::kCasesAnalysiswise : texts::kCasesListwise));
  const bool weighted = specs.dataSource().GetWeightVarIndex() >= 0;
  AddNotes(kWeightSection, keyText(texts::kWeightHandling),
           keyText(weighted ? texts::kWeightRounded : texts::kWeightNotApplicable));
}

}  // namespace proportions
