#include "module/syntax/onesample_subcommand.h"

#include "module/model/texts.h"
#include "module/syntax/method_lists.h"
#include "module/syntax/variable_lists.h"

namespace proportions {
namespace {

bool readTestVariables(ParseContext& context, SubComObj& subcommand) {
  auto variables = readVariables(context, context.lists.oneSample, listOf(subcommand));
  if (!variables) return false;
  if (removeDuplicateVariables(*variables)) {
    context.messages.GenericWarning(texts::kDuplicateVariables, keywords::kOneSample);
  }
  context.specs.setTestVarIndices(*variables);
  return true;
}

void readTestValue(ParseContext& context, SubComObj& subcommand) {
  const ParamObj* parameter = subcommand.getParamObj(keywords::kTestVal);
  if (parameter == nullptr) return;
  double testValue = 0.5;
  parameter->getNumberValue(testValue);
  context.specs.setTestValue(testValue);
}

}  // namespace

bool validateOneSample(ParseContext& context, SubComObj& subcommand) {
  const bool valid = readTestVariables(context, subcommand);
  if (valid) readTestValue(context, subcommand);
  const MethodLists lists = readMethodLists(context, subcommand, oneSampleMethods(), valid);
  // A command that asks for nothing is legal, but hardly meant; the other designs accept it without
  // a word.
  if (lists.valid && !lists.tableRequested) context.messages.NoTableRequested();
  return lists.valid;
}

}  // namespace proportions
