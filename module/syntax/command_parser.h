/// Parses the running command into the specification record.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/messages.h"
#include "host/parser.h"
#include "module/syntax/design_methods.h"
#include "module/syntax/valid_specs.h"

namespace proportions {

using Tokens = std::vector<TokenInfoObj>;
using VarIndices = std::vector<VarIndex>;

/// One per run. Tokens, record and data source outlive it.
class PRPCommandParser {
 public:
  PRPCommandParser(ZELK_TokenSequence& tokens, PRPValidSpecs& specs, ProcedureDataSource& source);
  PRPCommandParser(const PRPCommandParser&) = delete;
  PRPCommandParser& operator=(const PRPCommandParser&) = delete;

  /// True when the command is valid and the record filled; otherwise the reason has been reported
  /// and the record is not to be used.
  bool parse();

 private:
  /// The qualifier of VALUE as given.
  struct SuccessRule {
    std::string qualifier;
    Tokens tokens;
    double cutPoint;  ///< missing when none was given
  };
  /// An unnamed list split at a reserved word.
  struct SplitTokens {
    Tokens before;
    Tokens after;
    int separators = 0;
  };

  // command_parser.cpp
  bool walk(CommandSpec& command);
  bool setModelType();
  bool takeSplitAndWeight();
  static SplitTokens splitAt(SubComObj& subcommand, int operatorCode);
  /// Both keep first occurrences in their order and tell whether there was a repeat.
  bool removeDuplicateOptions(std::vector<std::string>& options, const char* parameter,
                              const char* subcommand);
  static bool removeDuplicateVariables(VarIndices& indices);
  bool readMethods(SubComObj& subcommand, const char* parameter, const MethodKeywords& methods,
                   const char* subcommandName, MethodFlags& flags, bool& tableRequested);
  bool readAllMethods(SubComObj& subcommand, const DesignMethods& design, bool valid,
                      bool& tableRequested);
  void validateMissing();
  void readCriteria();

  // onesample_subcommand.cpp
  bool validateOneSample();
  bool readOneSampleVariables();

  // paired_subcommand.cpp
  bool validatePairedSamples();
  bool readPairs();
  bool readPairQualifier(bool& ordered);
  bool storeSingleList(VarIndices first);
  bool storeTwoLists(VarIndices first, VarIndices second);
  bool storeOrderedPairs(const VarIndices& first, const VarIndices& second);

  // independent_subcommand.cpp
  bool validateIndependentSamples();
  bool readGroupedVariables();
  bool readTestVariables(const Tokens& tokens);
  bool readGroupingVariable(const Tokens& tokens);
  bool readGroupRule();
  bool readDefaultLevels();
  bool readGroupLevels(const Tokens& levels);
  bool levelsDiffer();

  // success_subcommand.cpp
  bool validateSuccess();
  SuccessRule readSuccessRule();
  bool buildSuccessElements(const SuccessRule& rule, const char* listKeyword,
                            const char* subcommand, const VarIndices& variables,
                            std::vector<BinInfoElem>& elements);
  bool buildSuccessElement(const SuccessRule& rule, const char* listKeyword, const char* subcommand,
                           VarIndex index, BinInfoElem& element);

  // level_values.cpp
  void addCutPoint(double number, const Tokens& tokens, BinInfoElem& element);
  bool addLevel(VarSpecObj& validator, bool isNumber, double number, const std::string& text,
                BinInfoElem& element);
  std::shared_ptr<ValueBuffer> newValueBuffer(int32_t words);

  CommandDescriptor descriptor_;
  ZELK_TokenSequence& tokens_;
  ProcedureDataSource& source_;
  PRPValidSpecs& specs_;
  ParserMessage messages_;

  SubComObj* oneSample_ = nullptr;
  SubComObj* pairedSamples_ = nullptr;
  SubComObj* independentSamples_ = nullptr;
  SubComObj* success_ = nullptr;
  SubComObj* missing_ = nullptr;
  SubComObj* criteria_ = nullptr;

  VarSpecObj splitVars_;
  VarSpecObj weightVar_;
  VarSpecObj oneSampleVars_;
  VarSpecObj pairedVars_;
  VarSpecObj pairedWithVars_;
  VarSpecObj independentVars_;
  VarSpecObj groupVar_;

  /// Every converted value, shared with the record's definitions.
  std::vector<std::shared_ptr<ValueBuffer>> valueBuffers_;
};

}  // namespace proportions
