/// The host's command parser: a procedure describes its syntax with descriptors, hands them to a
/// UniversalParser, and reads the parsed command back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/data_source.h"

#pragma GCC visibility push(default)

namespace UPSpecTypes {
enum SubComSpec { kSubCommand = 1 };
/// What a parameter takes: raw tokens, one keyword, a list of keywords, one number, or one of its
/// qualifiers.
enum ParamSpec { kTokens = 2, kKeyword = 3, kKeywordList = 5, kNumber = 7, kQualified = 27 };
enum BracketOptions { kNoBrackets = 0 };
enum LowerBdryOptions { kLowerInclusive = 1, kLowerExclusive = 2 };
enum UpperBdryOptions { kUpperInclusive = 1, kUpperExclusive = 2 };
}  // namespace UPSpecTypes

/// One parameter, or one qualifier that carries a value. A value type; owners keep copies.
class ParamDescriptor {
 public:
  /// `valueRequired` is false for a qualifier that may stand bare. `flag` is for the host's own
  /// use.
  ParamDescriptor(const std::string& name, UPSpecTypes::ParamSpec spec, bool flag,
                  bool valueRequired, UPSpecTypes::BracketOptions brackets);
  ParamDescriptor(const ParamDescriptor& other);
  ParamDescriptor& operator=(const ParamDescriptor& other);
  ~ParamDescriptor();

  /// Adds one allowed keyword, in upper case.
  void addStringValue(const std::string& keyword);
  /// Adds a qualifier without a value.
  void addQualifDesc(const std::string& name);
  /// Adds a qualifier with a value of its own kind.
  void addQualifDesc(const ParamDescriptor& qualifier);
  void setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option);
  void setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option);

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// One subcommand.
class SubComDescriptor {
 public:
  /// The two flags (required, repeatable) are false for every subcommand here: the host reports a
  /// repeated subcommand as a syntax error.
  SubComDescriptor(const std::string& name, UPSpecTypes::SubComSpec spec, bool required,
                   bool repeatable);
  SubComDescriptor(const SubComDescriptor& other);
  SubComDescriptor& operator=(const SubComDescriptor& other);
  ~SubComDescriptor();

  /// Declares the unnamed leading list that stands before every named parameter. An absent list is
  /// no syntax error; it reaches the procedure empty.
  void setExportParamDesc(UPSpecTypes::ParamSpec spec, bool flag);
  void addParamDesc(const ParamDescriptor& parameter);

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// A whole command.
class CommandDescriptor {
 public:
  CommandDescriptor(const std::string& name, const std::string& title);
  ~CommandDescriptor();
  CommandDescriptor(const CommandDescriptor&) = delete;
  CommandDescriptor& operator=(const CommandDescriptor&) = delete;

  void addSubComDesc(const SubComDescriptor& subcommand);

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// One token of a raw list. A value type.
class TokenInfoObj {
 public:
  enum class Kind { kWord, kNumber, kString, kSymbol };
  /// `text` is without quotes; `operatorCode` is 0 unless the token is an unquoted reserved word.
  /// `position` is the token's place in the command text, for messages.
  TokenInfoObj(Kind kind, std::string text, double number, int operatorCode, size_t position)
      : kind_(kind),
        text_(std::move(text)),
        number_(number),
        operatorCode_(operatorCode),
        position_(position) {}

  bool isReservedWord() const { return operatorCode_ != 0; }
  /// 31 for WITH, 34 for BY, other codes for other reserved words, 0 for everything else.
  int getOperatorCode() const { return operatorCode_; }
  bool isNumber() const { return kind_ == Kind::kNumber; }
  /// The value of a number token (a sign belongs to the number).
  double getNumber() const { return number_; }
  /// The text as written, without quotes, doubled quotes undoubled.
  const std::string& getText() const { return text_; }
  std::string getUpText() const;
  Kind kind() const { return kind_; }
  size_t position() const { return position_; }

 private:
  Kind kind_;
  std::string text_;
  double number_;
  int operatorCode_;
  size_t position_;
};
inline constexpr int kOperatorWith = 31;
inline constexpr int kOperatorBy = 34;

/// A parsed parameter. Owned by the CommandSpec.
class ParamObj {
 public:
  struct Impl;
  explicit ParamObj(std::unique_ptr<Impl> impl);
  ~ParamObj();

  /// The raw tokens of a list or qualifier, separators and the qualifier's own parentheses left
  /// out. In an unnamed list a parenthesised word after the variables is included, parentheses and
  /// all.
  const std::vector<TokenInfoObj>& getTokenList() const;
  /// True when that keyword was given.
  bool isStringValueCase(const std::string& keyword) const;
  /// The keywords given, in upper case and in the user's order, repeats included.
  std::vector<std::string> getUpStringList() const;
  /// Stores the number and answers true; leaves `value` alone and answers false when there is none.
  bool getNumberValue(double& value) const;
  /// The qualifier given: its name in upper case, and its value (owned by this object).
  bool getStringAndQual(std::string& qualifierName, ParamObj*& qualifier) const;
  /// True when a qualifier was written without values.
  bool isLeadingToken() const;

 private:
  std::unique_ptr<Impl> impl_;
};

/// A parsed subcommand. Owned by the CommandSpec.
class SubComObj {
 public:
  struct Impl;
  explicit SubComObj(std::unique_ptr<Impl> impl);
  ~SubComObj();

  /// The unnamed leading list; null or without tokens when it was not written.
  ParamObj* exportParamObj();
  /// The parameter of that name, null when it was not written.
  ParamObj* getParamObj(const std::string& name);
  /// The subcommand's name as a user knows it.
  std::string getExternalName() const;

 private:
  std::unique_ptr<Impl> impl_;
};

/// The parsed command.
class CommandSpec {
 public:
  CommandSpec();
  ~CommandSpec();
  CommandSpec(const CommandSpec&) = delete;
  CommandSpec& operator=(const CommandSpec&) = delete;

  int getSubComListSize() const;
  /// The subcommand of that name, null when it was not written.
  SubComObj* getSubComObj(const std::string& name);

  struct Impl;
  Impl& impl() { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// The tokens of the running command.
class ZELK_TokenSequence {
 public:
  /// True attaches to the command that the host is running.
  explicit ZELK_TokenSequence(bool current);
  ~ZELK_TokenSequence();
  ZELK_TokenSequence(const ZELK_TokenSequence&) = delete;
  ZELK_TokenSequence& operator=(const ZELK_TokenSequence&) = delete;

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

/// Parses a token sequence by a descriptor. The three objects must outlive it.
class UniversalParser {
 public:
  UniversalParser(ZELK_TokenSequence& tokens, CommandSpec& result, const CommandDescriptor& syntax);
  ~UniversalParser();
  UniversalParser(const UniversalParser&) = delete;
  UniversalParser& operator=(const UniversalParser&) = delete;

  /// 0 when the command was parsed into the CommandSpec; anything else when it was not, and then
  /// the error has been reported.
  int getCommandSpecifications();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// How a variable list treats repeats.
enum RepeatOption { kPlainList = 0, kKeepRepeats = 3 };

/// Turns names into variables and reports what is wrong with them in the host's words.
class VarSpecObj {
 public:
  /// A list of the whole command ("SPLIT FILE"; "WEIGHT", for which `isWeight` is true).
  VarSpecObj(const std::string& listName, const CommandDescriptor& owner,
             ProcedureDataSource& source, bool isWeight = false);
  /// A list of a subcommand; `listName` is "" or the word that the list follows.
  VarSpecObj(const std::string& listName, const std::string& subcommand,
             ProcedureDataSource& source);
  ~VarSpecObj();
  VarSpecObj(const VarSpecObj&) = delete;
  VarSpecObj& operator=(const VarSpecObj&) = delete;

  /// Resolves names, `a TO b` in file order, and ALL (every variable but the weight and the split
  /// variables). False, with a message, for anything else. Repeats are kept, in order.
  bool ValidateVariables(const std::vector<TokenInfoObj>& tokens, int repeatOption);
  /// One variable: its index, or a negative number after a message.
  VarIndex ValidateVariable(const TokenInfoObj& token);
  /// Takes indices that come from the data source.
  bool SetVariables(const std::vector<VarIndex>& variables, int repeatOption);
  /// Takes one such index; refuses, with a message, a string variable as the weight.
  bool SetVariable(VarIndex variable);
  /// The variables that were accepted last.
  std::vector<VarIndex> GetValidVarList() const;
  /// True when the two lists have no variable in common; otherwise the first common one is
  /// reported.
  bool CheckCommonVars(const VarSpecObj& other);
  /// When allowed, ValidateVariables stops at "(", and what stands in the parentheses is kept.
  void SetAllowQualifiers(bool allow);
  /// The tokens inside the parentheses; none when none were written. `HasQualifier` tells "()" from
  /// nothing.
  const std::vector<TokenInfoObj>& GetQualTokenList() const;
  bool HasQualifier() const;
  /// Converts a text to a value of the last variable set with SetVariable or ValidateVariable,
  /// written to `buffer` as whole 8-byte words (strings padded with blanks), and gives the
  /// variable's format. False when the variable cannot hold it. `buffer` must hold one value of the
  /// variable.
  bool ValidateCatValue(const std::string& text, void* buffer, ZELK_Format& format);
  /// While off, failures are silent.
  void SetErrorReporting(bool on);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

#pragma GCC visibility pop
