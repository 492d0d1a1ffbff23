#include "module/output/texts.h"
#include "module/syntax/command_parser.h"
#include "module/syntax/keywords.h"

namespace proportions {

bool PRPCommandParser::validateOneSample() {
  const bool valid = readOneSampleVariables();
  if (valid) {
    if (const ParamObj* parameter = oneSample_->getParamObj(keywords::kTestVal)) {
      double testValue = 0.5;
      parameter->getNumberValue(testValue);
      specs_.setTestValue(testValue);
    }
  }
  bool tableRequested = false;
  if (!readAllMethods(*oneSample_, oneSampleMethods(), valid, tableRequested)) return false;
  // A command that asks for nothing is legal, but hardly meant; the other designs accept it without
  // a word.
  if (!tableRequested) messages_.NoTableRequested();
  return true;
}

bool PRPCommandParser::readOneSampleVariables() {
  const ParamObj* list = oneSample_->exportParamObj();
  const Tokens tokens = list == nullptr ? Tokens() : list->getTokenList();
  if (!oneSampleVars_.ValidateVariables(tokens, kKeepRepeats)) return false;
  if (!oneSampleVars_.CheckCommonVars(weightVar_)) return false;
  VarIndices variables = oneSampleVars_.GetValidVarList();
  if (removeDuplicateVariables(variables)) {
    messages_.GenericWarning(texts::kDuplicateVariables, keywords::kOneSample);
  }
  specs_.setTestVarIndices(variables);
  return true;
}

}  // namespace proportions
