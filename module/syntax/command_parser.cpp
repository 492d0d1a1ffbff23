#include "module/syntax/command_parser.h"

#include <algorithm>
#include <utility>

#include "module/output/texts.h"
#include "module/syntax/grammar.h"
#include "module/syntax/keywords.h"

namespace proportions {

PRPCommandParser::PRPCommandParser(ZELK_TokenSequence& tokens, PRPValidSpecs& specs,
                                   ProcedureDataSource& source)
    : descriptor_(texts::kCommandName, texts::kProcedureTitle),
      tokens_(tokens),
      source_(source),
      specs_(specs),
      splitVars_("SPLIT FILE", descriptor_, source),
      weightVar_("WEIGHT", descriptor_, source, true),
      oneSampleVars_("", keywords::kOneSample, source),
      pairedVars_("", keywords::kPairedSamples, source),
      pairedWithVars_(keywords::kWith, keywords::kPairedSamples, source),
      independentVars_("", keywords::kIndependentSamples, source),
      groupVar_(keywords::kBy, keywords::kIndependentSamples, source) {
  messages_.SetCommandName(texts::kCommandName);
  messages_.SetProcedureTitle(texts::kProcedureTitle);
}

bool PRPCommandParser::parse() {
  CommandSpec command;
  BuildCommandDescriptor(descriptor_);
  UniversalParser parser(tokens_, command, descriptor_);
  if (parser.getCommandSpecifications() != 0) return false;
  if (command.getSubComListSize() == 0) {
    messages_.NoSubCom();
    return false;
  }
  return walk(command);
}

bool PRPCommandParser::walk(CommandSpec& command) {
  oneSample_ = command.getSubComObj(keywords::kOneSample);
  pairedSamples_ = command.getSubComObj(keywords::kPairedSamples);
  independentSamples_ = command.getSubComObj(keywords::kIndependentSamples);
  success_ = command.getSubComObj(keywords::kSuccess);
  missing_ = command.getSubComObj(keywords::kMissing);
  criteria_ = command.getSubComObj(keywords::kCriteria);

  if (!setModelType() || !takeSplitAndWeight()) return false;
  if (oneSample_ != nullptr && !validateOneSample()) return false;
  if (pairedSamples_ != nullptr && !validatePairedSamples()) return false;
  if (independentSamples_ != nullptr && !validateIndependentSamples()) return false;
  if (!validateSuccess()) return false;
  if (missing_ != nullptr) validateMissing();
  if (criteria_ != nullptr) readCriteria();
  return true;
}

bool PRPCommandParser::setModelType() {
  int designs = 0;
  const std::pair<SubComObj*, ModelType> candidates[] = {
      {oneSample_, kOneSample},
      {pairedSamples_, kPairedSamples},
      {independentSamples_, kIndependentSamples}};
  for (const auto& [subcommand, type] : candidates) {
    if (subcommand == nullptr) continue;
    specs_.setModelType(type);
    ++designs;
  }
  if (designs == 1) return true;
  messages_.GenericError(texts::kExactlyOneTest);
  return false;
}

bool PRPCommandParser::takeSplitAndWeight() {
  VarIndices split;
  const int32_t count = source_.GetNSplitVars();
  for (int32_t position = 0; position < count; ++position) {
    split.push_back(source_.GetSplitVarIndex(position));
  }
  if (!split.empty()) {
    if (!splitVars_.SetVariables(split, kPlainList)) return false;
    splitVars_.GetValidVarList();
  }
  const VarIndex weight = source_.GetWeightVarIndex();
  return weight < 0 || weightVar_.SetVariable(weight);
}

PRPCommandParser::SplitTokens PRPCommandParser::splitAt(SubComObj& subcommand, int operatorCode) {
  SplitTokens result;
  const ParamObj* list = subcommand.exportParamObj();
  if (list == nullptr) return result;
  for (const TokenInfoObj& token : list->getTokenList()) {
    if (token.isReservedWord() && token.getOperatorCode() == operatorCode) {
      if (++result.separators == 2) break;
    } else {
      (result.separators == 0 ? result.before : result.after).push_back(token);
    }
  }
  return result;
}

bool PRPCommandParser::removeDuplicateOptions(std::vector<std::string>& options,
                                              const char* parameter, const char* subcommand) {
  std::vector<std::string> kept;
  for (std::string& option : options) {
    if (std::find(kept.begin(), kept.end(), option) == kept.end()) kept.push_back(option);
  }
  if (kept.size() == options.size()) return false;
  options = std::move(kept);
  messages_.GenericWarning(texts::kDuplicateOptions, parameter, subcommand);
  return true;
}

bool PRPCommandParser::removeDuplicateVariables(VarIndices& indices) {
  VarIndices distinct = distinctIndices(indices);
  if (distinct.size() == indices.size()) return false;
  indices = std::move(distinct);
  return true;
}

/// Sets the flags of one keyword list. False when NONE has company.
bool PRPCommandParser::readMethods(SubComObj& subcommand, const char* parameter,
                                   const MethodKeywords& methods, const char* subcommandName,
                                   MethodFlags& flags, bool& tableRequested) {
  const ParamObj* list = subcommand.getParamObj(parameter);
  if (list == nullptr) {
    for (size_t i = 0; i < methods.size(); ++i) flags[i] = methods[i].byDefault;
    tableRequested = true;
    return true;
  }
  std::vector<std::string> options = list->getUpStringList();
  removeDuplicateOptions(options, parameter, subcommandName);
  const auto given = [&options](const std::string& keyword) {
    return std::find(options.begin(), options.end(), keyword) != options.end();
  };
  const bool none = given(keywords::kNone);
  if (!none) tableRequested = true;
  for (size_t i = 0; i < methods.size(); ++i) flags[i] = given(methods[i].keyword);
  if (none && options.size() > 1) {
    messages_.ParamExclAnyOther(std::string(parameter) + " " + keywords::kNone, subcommandName);
    return false;
  }
  if (given(keywords::kAll)) flags.assign(methods.size(), true);
  return true;
}

/// Sizes both flag vectors whatever the outcome, and fills them as long as the subcommand is valid.
bool PRPCommandParser::readAllMethods(SubComObj& subcommand, const DesignMethods& design,
                                      bool valid, bool& tableRequested) {
  specs_.testTypes().assign(design.tests.size(), false);
  if (valid) {
    valid = readMethods(subcommand, keywords::kTestTypes, design.tests, design.subcommand,
                        specs_.testTypes(), tableRequested);
  }
  specs_.ciTypes().assign(design.intervals.size(), false);
  if (!valid) return false;
  return readMethods(subcommand, keywords::kCiTypes, design.intervals, design.subcommand,
                     specs_.ciTypes(), tableRequested);
}

void PRPCommandParser::validateMissing() {
  if (const ParamObj* scope = missing_->getParamObj(keywords::kScope)) {
    specs_.setScopeAnalysis(scope->isStringValueCase(keywords::kAnalysis));
  }
  if (const ParamObj* userMissing = missing_->getParamObj(keywords::kUserMissing)) {
    specs_.setUserMissingIncluded(userMissing->isStringValueCase(keywords::kInclude));
  }
}

void PRPCommandParser::readCriteria() {
  const ParamObj* parameter = criteria_->getParamObj(keywords::kCiLevel);
  if (parameter == nullptr) return;
  double level = 95.0;
  parameter->getNumberValue(level);
  specs_.setConfidenceLevel(level);
}

}  // namespace proportions
