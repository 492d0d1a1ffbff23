#include "module/output/warnings.h"

#include "module/output/result_table.h"

namespace proportions {
namespace {

constexpr int kErrorCode = 2;
constexpr int kWarningLevel = 2;
constexpr int kSevereLevel = 3;

void addSplitList(BpComposite& label) {
  label.Sublist();
  label.SplitList();
  label.EndSublist();
}

}  // namespace

void warnNothingValid(const PRPAlgorithm& analysis, const char* plainKey, const char* splitKey) {
  if (!analysis.splitFile) {
    BpError(keyText(plainKey), kErrorCode, kSevereLevel);
    return;
  }
  BpComposite label(splitKey);
  addSplitList(label);
  label.Finish();
  BpError(label, kErrorCode, kWarningLevel);
}

void warnOneInvalid(const PRPAlgorithm& analysis, const char* plainKey, const char* splitKey,
                    const std::function<void(BpComposite&)>& addItems) {
  BpComposite label(analysis.splitFile ? splitKey : plainKey);
  addItems(label);
  if (analysis.splitFile) addSplitList(label);
  label.Finish();
  BpError(label, kErrorCode, kWarningLevel);
}

void warnVariableInvalid(const PRPAlgorithm& analysis, const char* plainKey, const char* splitKey,
                         VarIndex variable) {
  warnOneInvalid(analysis, plainKey, splitKey,
                 [variable](BpComposite& label) { label.Add(BpVariable(variable, 2)); });
}

}  // namespace proportions
