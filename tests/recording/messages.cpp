// Messages and the error repository: recorded as they are asked for.
#include "host/messages.h"

#include "tests/recording/host.h"
#include "workbench/output/report.h"

using recording::Call;
using recording::Kind;
using recording::Life;
using recording::Raw;

struct ParserMessage::Impl {
  Life self{Kind::kParserMessage};
};

struct ACAInpAdaptMsg::Impl {
  Life self{Kind::kInputMessage};
};

ParserMessage::ParserMessage() : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new").done();
}
ParserMessage::~ParserMessage() = default;

void ParserMessage::SetCommandName(const std::string& name) {
  Call(impl_->self, "SetCommandName", name).done();
}
void ParserMessage::SetProcedureTitle(const std::string& title) {
  Call(impl_->self, "SetProcedureTitle", title).done();
}
void ParserMessage::GenericError(const std::string& key) {
  Call(impl_->self, "GenericError", key).done();
}
void ParserMessage::GenericError(const std::string& key, const std::string& first) {
  Call(impl_->self, "GenericError", key, first).done();
}
void ParserMessage::GenericError(const std::string& key, const std::string& first,
                                 const std::string& second) {
  Call(impl_->self, "GenericError", key, first, second).done();
}
void ParserMessage::GenericWarning(const std::string& key) {
  Call(impl_->self, "GenericWarning", key).done();
}
void ParserMessage::GenericWarning(const std::string& key, const std::string& first) {
  Call(impl_->self, "GenericWarning", key, first).done();
}
void ParserMessage::GenericWarning(const std::string& key, const std::string& first,
                                   const std::string& second) {
  Call(impl_->self, "GenericWarning", key, first, second).done();
}
void ParserMessage::NoSubCom() { Call(impl_->self, "NoSubCom").done(); }
void ParserMessage::NoTableRequested() { Call(impl_->self, "NoTableRequested").done(); }
void ParserMessage::ParamExclAnyOther(const std::string& paramAndKeyword,
                                      const std::string& subcommand) {
  Call(impl_->self, "ParamExclAnyOther", paramAndKeyword, subcommand).done();
}
void ParserMessage::VariableNotNumeric(const std::string& variable, const std::string& list,
                                       const std::string& subcommand) {
  Call(impl_->self, "VariableNotNumeric", variable, list, subcommand).done();
}

ACAInpAdaptMsg::ACAInpAdaptMsg(ProcedureDataSource&) : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new").done();
}
ACAInpAdaptMsg::~ACAInpAdaptMsg() = default;

void ACAInpAdaptMsg::NoValidCases() { Call(impl_->self, "NoValidCases").done(); }
void ACAInpAdaptMsg::NoValidCasesSplit() { Call(impl_->self, "NoValidCasesSplit").done(); }

void BEPesRepos::BEPesClear() { Call("BEPesRepos.BEPesClear", Call::May::kThrow).done(); }
void BEPesRepos::BEPesCheckError() { Call("BEPesRepos.BEPesCheckError", Call::May::kThrow).done(); }

void workbench::report(Severity severity, const std::string& key,
                       const std::vector<std::string>& arguments) {
  Call("report", Call::May::kThrow, Raw{severity == Severity::kError ? "error" : "warning"}, key,
       arguments)
      .done();
}
