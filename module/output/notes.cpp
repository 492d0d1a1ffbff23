#include "module/output/notes.h"

#include "host/output.h"
#include "module/model/texts.h"
#include "module/output/result_table.h"

namespace proportions {

void addProcedureNotes(const PRPValidSpecs& specs) {
  const CommandSettings& settings = specs.settings();
  AddNotes(
      kMissingNotes, keyText(texts::kDefinitionOfMissing),
      keyText(settings.userMissingIncluded ? texts::kMissingIncluded : texts::kMissingExcluded));
  AddNotes(kMissingNotes, keyText(texts::kCasesUsed),
           keyText(settings.scopeAnalysis ? texts::kCasesAnalysiswise : texts::kCasesListwise));
  const bool weighted = specs.dataSource().GetWeightVarIndex() >= 0;
  AddNotes(kGeneralNotes, keyText(texts::kWeightHandling),
           keyText(weighted ? texts::kWeightRounded : texts::kWeightNotApplicable));
}

}  // namespace proportions
