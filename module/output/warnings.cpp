#include "module/output/warnings.h"

#include "module/output/result_table.h"

namespace proportions {
namespace {

void addSplitList(BpComposite& label) {
  label.Sublist();
  label.SplitList();
  label.EndSublist();
}

}  // namespace

void warnNothingValid(bool splitFile, const char* plainKey, const char* splitKey) {
  if (!splitFile) {
    BpError(keyText(plainKey), kDataMessage, kSevereWarning);
    return;
  }
  BpComposite label(splitKey);
  addSplitList(label);
  label.Finish();
  BpError(label, kDataMessage, kPlainWarning);
}

void warnOneInvalid(bool splitFile, const char* plainKey, const char* splitKey,
                    const std::function<void(BpComposite&)>& addItems) {
  BpComposite label(splitFile ? splitKey : plainKey);
  addItems(label);
  if (splitFile) addSplitList(label);
  label.Finish();
  BpError(label, kDataMessage, kPlainWarning);
}

void warnVariableInvalid(bool splitFile, const char* plainKey, const char* splitKey,
                         VarIndex variable) {
  warnOneInvalid(splitFile, plainKey, splitKey, [variable](BpComposite& label) {
    label.Add(BpVariable(variable, kShowLabelElseName));
  });
}

}  // namespace proportions
