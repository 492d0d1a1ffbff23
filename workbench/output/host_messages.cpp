#include "host/messages.h"

#include "host/output.h"
#include "workbench/output/labels.h"
#include "workbench/output/output_document.h"
#include "workbench/output/report.h"
#include "workbench/output/template.h"
#include "workbench/session/session.h"
#include "workbench/text/utf8.h"

namespace workbench {

void report(Severity severity, const std::string& key, const std::vector<std::string>& arguments) {
  const int level = severity == Severity::kError ? 3 : 2;
  std::vector<std::string> texts;
  for (const std::string& argument : arguments) texts.push_back(validUtf8(argument));
  std::string text = fillTemplate(catalogueText(key), texts);
  currentSession().document->addMessage(
      {severity, level, validUtf8(key), std::move(texts), std::move(text), {}});
}

}  // namespace workbench

using workbench::report;
using workbench::Severity;

struct ParserMessage::Impl {
  std::string commandName;
};

ParserMessage::ParserMessage() : impl_(std::make_unique<Impl>()) {}
ParserMessage::~ParserMessage() = default;
void ParserMessage::SetCommandName(const std::string& name) { impl_->commandName = name; }
// Messages stand in their procedure's output and need not name it.
void ParserMessage::SetProcedureTitle(const std::string&) {}

void ParserMessage::GenericError(const std::string& key) { report(Severity::kError, key, {}); }
void ParserMessage::GenericError(const std::string& key, const std::string& first) {
  report(Severity::kError, key, {first});
}
void ParserMessage::GenericError(const std::string& key, const std::string& first,
                                 const std::string& second) {
  report(Severity::kError, key, {first, second});
}
void ParserMessage::GenericWarning(const std::string& key) { report(Severity::kWarning, key, {}); }
void ParserMessage::GenericWarning(const std::string& key, const std::string& first) {
  report(Severity::kWarning, key, {first});
}
void ParserMessage::GenericWarning(const std::string& key, const std::string& first,
                                   const std::string& second) {
  report(Severity::kWarning, key, {first, second});
}

void ParserMessage::NoSubCom() {
  report(Severity::kError, "Command ^1 without subcommand", {impl_->commandName});
}
void ParserMessage::NoTableRequested() { report(Severity::kWarning, "No table requested", {}); }
void ParserMessage::ParamExclAnyOther(const std::string& paramAndKeyword,
                                      const std::string& subcommand) {
  report(Severity::kError, "Param ^1, subcom ^2, excludes any other",
         {paramAndKeyword, subcommand});
}
void ParserMessage::VariableNotNumeric(const std::string& variable, const std::string& list,
                                       const std::string& subcommand) {
  report(Severity::kError, "Var ^1, list ^2, subcom ^3, not numeric", {variable, list, subcommand});
}

struct ACAInpAdaptMsg::Impl {};

// Nothing to hold: the session knows the data, and there are as many of these as split groups.
ACAInpAdaptMsg::ACAInpAdaptMsg(ProcedureDataSource&) {}
ACAInpAdaptMsg::~ACAInpAdaptMsg() = default;

void ACAInpAdaptMsg::NoValidCases() { report(Severity::kWarning, "No valid cases", {}); }

void ACAInpAdaptMsg::NoValidCasesSplit() {
  BpComposite text("No valid cases for split [%1 = %2:,^1 = ^2:]1");
  text.Sublist();
  text.SplitList();
  text.EndSublist();
  text.Finish();
  BpError(text, 2, 2);
}

void BEPesRepos::BEPesClear() { workbench::currentSession().document->clearErrors(); }

// The document settles a procedure's status from the same count when it ends; there is nothing to
// hand over.
void BEPesRepos::BEPesCheckError() {}
