#include "module/syntax/command_parser.h"

#include <utility>

#include "module/model/texts.h"
#include "module/syntax/grammar.h"
#include "module/syntax/independent_subcommand.h"
#include "module/syntax/missing_subcommand.h"
#include "module/syntax/onesample_subcommand.h"
#include "module/syntax/paired_subcommand.h"
#include "module/syntax/success_subcommand.h"

namespace proportions {

PRPCommandParser::PRPCommandParser(ZELK_TokenSequence& tokens, PRPValidSpecs& specs,
                                   ProcedureDataSource& source)
    : descriptor_(texts::kCommandName, texts::kProcedureTitle),
      tokens_(tokens),
      source_(source),
      specs_(specs),
      lists_(descriptor_, source) {
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
  given_.oneSample = command.getSubComObj(keywords::kOneSample);
  given_.pairedSamples = command.getSubComObj(keywords::kPairedSamples);
  given_.independentSamples = command.getSubComObj(keywords::kIndependentSamples);
  given_.success = command.getSubComObj(keywords::kSuccess);
  given_.missing = command.getSubComObj(keywords::kMissing);
  given_.criteria = command.getSubComObj(keywords::kCriteria);
  const bool valid = walk();
  given_ = {};
  return valid;
}

bool PRPCommandParser::walk() {
  if (!setModelType() || !takeSplitAndWeight() || !validateDesign()) return false;
  if (!validateSuccess(context_, given_.success)) return false;
  if (given_.missing != nullptr) validateMissing(context_, *given_.missing);
  if (given_.criteria != nullptr) readCriteria();
  return true;
}

bool PRPCommandParser::setModelType() {
  int designs = 0;
  for (const auto& [subcommand, code] :
       {std::pair(given_.oneSample, Design::kOneSample),
        std::pair(given_.pairedSamples, Design::kPaired),
        std::pair(given_.independentSamples, Design::kIndependent)}) {
    if (subcommand == nullptr) continue;
    specs_.setModelType(code);
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
    if (!lists_.split.SetVariables(split, kPlainList)) return false;
    lists_.split.GetValidVarList();
  }
  const VarIndex weight = source_.GetWeightVarIndex();
  return weight < 0 || lists_.weight.SetVariable(weight);
}

/// The design that was given, the only one.
bool PRPCommandParser::validateDesign() {
  if (given_.oneSample != nullptr) return validateOneSample(context_, *given_.oneSample);
  if (given_.pairedSamples != nullptr)
    return validatePairedSamples(context_, *given_.pairedSamples);
  return validateIndependentSamples(context_, *given_.independentSamples);
}

void PRPCommandParser::readCriteria() {
  const ParamObj* parameter = given_.criteria->getParamObj(keywords::kCiLevel);
  if (parameter == nullptr) return;
  double level = 95.0;
  parameter->getNumberValue(level);
  specs_.setConfidenceLevel(level);
}

}  // namespace proportions
