/// Messages of a procedure into the host's output. A text is a key of the host's message catalogue
/// with placeholders ^1, ^2; it is passed exactly as written.
#pragma once

#include <memory>
#include <string>

#include "host/data_source.h"

#pragma GCC visibility push(default)

/// Messages about the command. Errors have level 3, warnings level 2; none carries a split group.
class ParserMessage {
 public:
  ParserMessage();
  ~ParserMessage();
  ParserMessage(const ParserMessage&) = delete;
  ParserMessage& operator=(const ParserMessage&) = delete;

  void SetCommandName(const std::string& name);
  void SetProcedureTitle(const std::string& title);

  void GenericError(const std::string& key);
  void GenericError(const std::string& key, const std::string& first);
  void GenericError(const std::string& key, const std::string& first, const std::string& second);
  void GenericWarning(const std::string& key);
  void GenericWarning(const std::string& key, const std::string& first);
  void GenericWarning(const std::string& key, const std::string& first, const std::string& second);

  /// Error: the command has no subcommand.
  void NoSubCom();
  /// Warning: the command asks for no table.
  void NoTableRequested();
  /// Error: a keyword that must stand alone ("TESTTYPES NONE") has company.
  void ParamExclAnyOther(const std::string& paramAndKeyword, const std::string& subcommand);
  /// Error: a variable of a list ("BY") must be numeric.
  void VariableNotNumeric(const std::string& variable, const std::string& list,
                          const std::string& subcommand);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Messages about the cases of the active data set.
class ACAInpAdaptMsg {
 public:
  explicit ACAInpAdaptMsg(ProcedureDataSource& source);
  ~ACAInpAdaptMsg();
  ACAInpAdaptMsg(const ACAInpAdaptMsg&) = delete;
  ACAInpAdaptMsg& operator=(const ACAInpAdaptMsg&) = delete;

  /// Warning: the data set has no valid case.
  void NoValidCases();
  /// Warning: the split group of the last BpProcedure::SplitChange has no valid case.
  void NoValidCasesSplit();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// The host's error repository: what was reported as an error since the last clear.
struct BEPesRepos {
  static void BEPesClear();
  /// Hands the collected errors to the host, which marks the procedure as failed when there are
  /// any.
  static void BEPesCheckError();
};

#pragma GCC visibility pop
