#include "module/syntax/grammar.h"

#include <initializer_list>

#include "module/model/keywords.h"
#include "module/syntax/design_methods.h"

namespace proportions {
namespace {

ParamDescriptor parameter(const char* name, UPSpecTypes::ParamSpec spec) {
  return {name, spec, false, true, UPSpecTypes::kNoBrackets};
}

ParamDescriptor methodList(const char* name, const MethodKeywords& methods) {
  ParamDescriptor list = parameter(name, UPSpecTypes::kKeywordList);
  for (const MethodKeyword& method : methods) list.addStringValue(method.keyword);
  list.addStringValue(keywords::kAll);
  list.addStringValue(keywords::kNone);
  return list;
}

ParamDescriptor oneKeyword(const char* name, std::initializer_list<const char*> allowed) {
  ParamDescriptor choice = parameter(name, UPSpecTypes::kKeyword);
  for (const char* keyword : allowed) choice.addStringValue(keyword);
  return choice;
}

SubComDescriptor subcommand(const char* name) {
  return {name, UPSpecTypes::kSubCommand, false, false};
}

/// A design subcommand starts with its variable list.
SubComDescriptor design(const char* name) {
  SubComDescriptor result = subcommand(name);
  result.setExportParamDesc(UPSpecTypes::kTokens, true);
  return result;
}

void addMethods(SubComDescriptor& subcommand, const DesignMethods& methods) {
  subcommand.addParamDesc(methodList(keywords::kTestTypes, methods.tests));
  subcommand.addParamDesc(methodList(keywords::kCiTypes, methods.intervals));
}

void addOneSample(CommandDescriptor& command) {
  SubComDescriptor oneSample = design(keywords::kOneSample);
  ParamDescriptor testValue = parameter(keywords::kTestVal, UPSpecTypes::kNumber);
  testValue.setLowerBoundary(0.0, UPSpecTypes::kLowerExclusive);
  testValue.setUpperBoundary(1.0, UPSpecTypes::kUpperExclusive);
  oneSample.addParamDesc(testValue);
  addMethods(oneSample, oneSampleMethods());
  command.addSubComDesc(oneSample);
}

void addPairedSamples(CommandDescriptor& command) {
  SubComDescriptor paired = design(keywords::kPairedSamples);
  addMethods(paired, pairedMethods());
  command.addSubComDesc(paired);
}

void addIndependentSamples(CommandDescriptor& command) {
  SubComDescriptor independent = design(keywords::kIndependentSamples);
  ParamDescriptor select = parameter(keywords::kSelect, UPSpecTypes::kQualified);
  select.addQualifDesc(std::string(keywords::kMidpoint));
  select.addQualifDesc(parameter(keywords::kCutpoint, UPSpecTypes::kNumber));
  // A bare LEVEL is legal here: it stands for the default levels.
  select.addQualifDesc(ParamDescriptor(keywords::kLevel, UPSpecTypes::kTokens, false, false,
                                       UPSpecTypes::kNoBrackets));
  independent.addParamDesc(select);
  addMethods(independent, independentMethods());
  command.addSubComDesc(independent);
}

void addSuccess(CommandDescriptor& command) {
  SubComDescriptor success = subcommand(keywords::kSuccess);
  ParamDescriptor value = parameter(keywords::kValue, UPSpecTypes::kQualified);
  for (const char* bare : {keywords::kFirst, keywords::kLast, keywords::kMidpoint}) {
    value.addQualifDesc(std::string(bare));
  }
  value.addQualifDesc(parameter(keywords::kCutpoint, UPSpecTypes::kNumber));
  value.addQualifDesc(parameter(keywords::kLevel, UPSpecTypes::kTokens));
  success.addParamDesc(value);
  command.addSubComDesc(success);
}

void addMissing(CommandDescriptor& command) {
  SubComDescriptor missing = subcommand(keywords::kMissing);
  missing.addParamDesc(oneKeyword(keywords::kScope, {keywords::kAnalysis, keywords::kListwise}));
  missing.addParamDesc(
      oneKeyword(keywords::kUserMissing, {keywords::kExclude, keywords::kInclude}));
  command.addSubComDesc(missing);
}

void addCriteria(CommandDescriptor& command) {
  SubComDescriptor criteria = subcommand(keywords::kCriteria);
  ParamDescriptor level = parameter(keywords::kCiLevel, UPSpecTypes::kNumber);
  level.setLowerBoundary(0.0, UPSpecTypes::kLowerInclusive);
  level.setUpperBoundary(100.0, UPSpecTypes::kUpperExclusive);
  criteria.addParamDesc(level);
  command.addSubComDesc(criteria);
}

}  // namespace

void BuildCommandDescriptor(CommandDescriptor& command) {
  addOneSample(command);
  addPairedSamples(command);
  addIndependentSamples(command);
  addSuccess(command);
  addMissing(command);
  addCriteria(command);
}

}  // namespace proportions
