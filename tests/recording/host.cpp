#include "tests/recording/host.h"

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace recording {
namespace {

constexpr size_t kKinds = static_cast<size_t>(Kind::kCount);
constexpr std::array<const char*, kKinds> kNames{
    "ProcedureDataSource", "ProcDSIterator",     "ObsVecMap",       "ParamDescriptor",
    "SubComDescriptor",    "CommandDescriptor",  "ParamObj",        "SubComObj",
    "CommandSpec",         "ZELK_TokenSequence", "UniversalParser", "VarSpecObj",
    "ParserMessage",       "ACAInpAdaptMsg",     "BpProcedure",     "BpComposite",
    "BpCellText",          "BpPivotTable",       "BpDimension",     "BpGroup",
    "BpCategory"};

thread_local Host* openHost = nullptr;
thread_local int pauses = 0;
thread_local std::array<int, kKinds> living{};

}  // namespace

const char* nameOf(Kind kind) { return kNames[static_cast<size_t>(kind)]; }

std::vector<std::string> alive() {
  std::vector<std::string> names;
  for (size_t kind = 0; kind < static_cast<size_t>(Kind::kCellText); ++kind) {
    if (living[kind] != 0) {
      names.push_back(std::string(kNames[kind]) + " x" + std::to_string(living[kind]));
    }
  }
  return names;
}

FaultPause::FaultPause() { ++pauses; }
FaultPause::~FaultPause() { --pauses; }
bool allocationFaultsPaused() { return pauses > 0; }

Host::Host(const Script& script) : script_(script) {
  if (openHost != nullptr) throw std::logic_error("a recording host is open on this thread");
  openHost = this;
}

Host::~Host() {
  output.reset();
  openHost = nullptr;
}

Host& Host::current() {
  if (openHost == nullptr) throw std::logic_error("no recording host is open on this thread");
  return *openHost;
}

Host* Host::currentOrNull() { return openHost; }

bool Host::mayReadCase() {
  for (const ScriptFault& fault : script_.faults) {
    if (fault.at == ScriptFault::At::kCase && casesRead_ + 1 >= fault.k) {
      if (!fatal_) ++faultsInjected_;
      fatal_ = true;
      return false;
    }
  }
  ++casesRead_;
  return true;
}

const std::string* Host::enter(const std::string& operation, const std::string& text,
                               bool mayThrow) {
  if (quiet_ > 0) return nullptr;
  ++calls_;
  const int64_t occurrence = ++occurrences_[operation];
  for (const ScriptFault& fault : script_.faults) {
    const bool here = (fault.at == ScriptFault::At::kCall && fault.k == calls_) ||
                      (fault.at == ScriptFault::At::kOperation && fault.k == occurrence &&
                       fault.operation == operation);
    if (!here) continue;
    if (fault.what == ScriptFault::What::kFatalError) {
      ++faultsInjected_;
      fatal_ = true;
    } else if (mayThrow) {
      ++faultsInjected_;
      transcript_.add({operation, text + " throws"});
      if (fault.what == ScriptFault::What::kBadAlloc) throw std::bad_alloc();
      throw std::runtime_error("scripted failure of " + operation);
    }
  }
  for (const ScriptAnswer& answer : script_.answers) {
    if (answer.operation != operation) continue;
    if (answer.occurrence == 0 || answer.occurrence == occurrence) return &answer.value;
  }
  return nullptr;
}

Life::Life(Kind kind) : kind_(kind), number_(Host::current().nextNumber(kind)) {
  ++living[static_cast<size_t>(kind)];
}

Life::~Life() {
  --living[static_cast<size_t>(kind_)];
  Host* host = Host::currentOrNull();
  if (host == nullptr || kind_ >= Kind::kCellText) return;
  const FaultPause pause;
  host->transcript().add({std::string(nameOf(kind_)) + ".delete", name() + ".delete"});
}

std::string Life::name() const {
  const FaultPause pause;
  return std::string(nameOf(kind_)) + "#" + std::to_string(number_);
}

void Call::begin(const Life* self, const char* operation, const std::string& arguments) {
  operation_ = self == nullptr ? "" : std::string(nameOf(self->kind())) + ".";
  operation_ += operation;
  text_ = self == nullptr ? "" : self->name() + ".";
  text_ += operation + ("(" + arguments + ")");
}

std::string Call::joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty()) text += ", ";
    text += part;
  }
  return text;
}

void Call::write(const std::string& ending) {
  Host& host = Host::current();
  if (host.quiet_ > 0) return;
  const FaultPause pause;
  host.transcript().add({operation_, text_ + ending});
}

bool flagOr(const Call& call, bool otherwise) {
  return call.answer() == nullptr ? otherwise : *call.answer() == "true";
}

int32_t numberOr(const Call& call, int32_t otherwise) {
  return call.answer() == nullptr ? otherwise : std::atoi(call.answer()->c_str());
}

}  // namespace recording
