// The scripted data set: variables, cases in chunks, split groups, weights.
#include "host/data_source.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "tests/recording/host.h"

using recording::Call;
using recording::Host;
using recording::Kind;
using recording::Life;
using recording::Raw;
using recording::ScriptRow;
using recording::ScriptVariable;

struct ZELK_ValueLabelMap::Impl {
  const ScriptVariable* variable;
};

struct ZELK_Variable::Impl {
  const ScriptVariable* variable;
  ZELK_ValueLabelMap::Impl labels;
};

namespace {

size_t wordsOf(const ScriptVariable& variable) {
  return static_cast<size_t>(ObsLength(variable.width));
}

/// The scripted cases as columns of words, and the stream of chunks that the script asks for.
struct CaseColumns {
  explicit CaseColumns(const recording::Script& script) {
    for (size_t i = 0; i < script.variables.size(); ++i) {
      const ScriptVariable& variable = script.variables[i];
      std::vector<double> words;
      for (const ScriptRow& row : script.rows) {
        if (row.kind == ScriptRow::Kind::kCase) append(row.values[i], variable, words);
      }
      columns.push_back(std::move(words));
      strides.push_back(static_cast<ptrdiff_t>(wordsOf(variable)));
    }
  }

  static void append(const recording::Value& value, const ScriptVariable& variable,
                     std::vector<double>& words) {
    if (variable.width == 0) {
      words.push_back(std::get<double>(value));
      return;
    }
    const std::string& text = std::get<std::string>(value);
    std::vector<double> observation(wordsOf(variable));
    std::memset(observation.data(), ' ', observation.size() * sizeof(double));
    const size_t used = std::min(text.size(), static_cast<size_t>(variable.width));
    std::memcpy(observation.data(), text.data(), used);
    words.insert(words.end(), observation.begin(), observation.end());
  }

  std::vector<std::vector<double>> columns;
  std::vector<ptrdiff_t> strides;
};

class ScriptedFeed final : public CaseFeed {
 public:
  explicit ScriptedFeed(std::shared_ptr<const CaseColumns> columns)
      : life_(Kind::kIterator), columns_(std::move(columns)), views_(columns_->columns.size()) {}

  const Life& life() const { return life_; }
  const CaseChunk* NextChunk() override;

 private:
  const CaseChunk* endMark();
  const CaseChunk* cases();
  void rememberSplit();

  Life life_;
  std::shared_ptr<const CaseColumns> columns_;
  std::vector<ColumnView> views_;
  CaseChunk chunk_;
  size_t row_ = 0;         // in the script, end marks included
  ptrdiff_t caseRow_ = 0;  // in the columns
};

const CaseChunk* ScriptedFeed::NextChunk() {
  Call call(life_, "NextChunk");
  const std::vector<ScriptRow>& rows = Host::current().script().rows;
  if (row_ >= rows.size() || Host::current().fatal()) {
    call.givesText("null");
    return nullptr;
  }
  chunk_ = CaseChunk{views_.data(), nullptr, 0, false};
  const CaseChunk* chunk = &chunk_;
  if (rows[row_].kind == ScriptRow::Kind::kCase) {
    chunk = cases();
  } else {
    chunk_.groupEnd = rows[row_++].kind == ScriptRow::Kind::kEndMark;
  }
  if (chunk == nullptr) {
    call.givesText("null");
  } else {
    call.givesText(chunk->groupEnd ? "end mark" : std::to_string(chunk->count) + " cases");
  }
  return chunk;
}

const CaseChunk* ScriptedFeed::cases() {
  Host& host = Host::current();
  const recording::Script& script = host.script();
  while (row_ < script.rows.size() && script.rows[row_].kind == ScriptRow::Kind::kCase &&
         chunk_.count < script.chunkSize && host.mayReadCase()) {
    ++row_;
    ++chunk_.count;
  }
  if (chunk_.count == 0) return nullptr;
  for (size_t i = 0; i < views_.size(); ++i) {
    const ptrdiff_t stride = columns_->strides[i];
    views_[i] = {columns_->columns[i].data() + caseRow_ * stride, stride};
  }
  if (script.weight >= 0) chunk_.weights = views_[static_cast<size_t>(script.weight)].words;
  rememberSplit();
  caseRow_ += chunk_.count;
  return &chunk_;
}

void ScriptedFeed::rememberSplit() {
  Host& host = Host::current();
  const recording::Script& script = host.script();
  std::vector<recording::Value> values;
  for (const VarIndex index : script.split) {
    values.push_back(
        script.rows[row_ - static_cast<size_t>(chunk_.count)].values[static_cast<size_t>(index)]);
  }
  host.liveSplit = std::move(values);
}

}  // namespace

struct ProcedureDataSource::Impl {
  Impl() : columns(std::make_shared<CaseColumns>(Host::current().script())) {
    for (const ScriptVariable& variable : Host::current().script().variables) {
      states.push_back({&variable, {&variable}});
      variables.emplace_back(
          &states.back(), variable.width,
          NumericMissingView{variable.missingNumbers.data(), variable.missingNumbers.size(),
                             variable.missingLow, variable.missingHigh});
    }
  }

  Life self{Kind::kProcedureDataSource};
  std::shared_ptr<const CaseColumns> columns;
  std::deque<ZELK_Variable::Impl> states;
  std::deque<ZELK_Variable> variables;
};

const std::string* ZELK_ValueLabelMap::Find(double value) const {
  for (const auto& [number, label] : impl_->variable->numberLabels) {
    if (number == value) return &label;
  }
  return nullptr;
}

const std::string* ZELK_ValueLabelMap::Find(std::string_view value) const {
  for (const auto& [text, label] : impl_->variable->stringLabels) {
    if (text == value) return &label;
  }
  return nullptr;
}

bool ZELK_Variable::IsMissingString(const void* obs) const {
  std::string_view value(static_cast<const char*>(obs), static_cast<size_t>(type_));
  while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
  if (value.empty()) return true;
  const std::vector<std::string>& missing = impl_->variable->missingStrings;
  return std::find(missing.begin(), missing.end(), value) != missing.end();
}

ZelkVarName ZELK_Variable::GetName() const { return ZelkVarName(impl_->variable->name); }

ZelkVarName ZELK_Variable::GetUpName() const {
  std::string name = impl_->variable->name;
  for (char& letter : name) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return ZelkVarName(name);
}

std::string ZELK_Variable::GetLabel() const { return impl_->variable->label; }

ZELK_Format ZELK_Variable::GetFormat() const {
  ZELK_Format format;
  format.type = static_cast<uint8_t>(impl_->variable->formatType);
  format.width = static_cast<uint8_t>(std::min(type_, 255));
  return format;
}

ZELK_Format ZELK_Variable::GetFormatEx() const { return GetFormat(); }

ZELK_ValueLabelMap ZELK_Variable::GetValueLabels() const {
  return ZELK_ValueLabelMap(&impl_->labels);
}

int32_t ZELK_DataSource::GetVariableCount() const {
  const auto& impl = *static_cast<const ProcedureDataSource&>(*this).impl_;
  return Call(impl.self, "GetVariableCount").gives(static_cast<int32_t>(impl.variables.size()));
}

const ZELK_Variable& ZELK_DataSource::GetVariable(VarIndex index) const {
  const auto& impl = *static_cast<const ProcedureDataSource&>(*this).impl_;
  Call(impl.self, "GetVariable", index).done();
  return impl.variables.at(static_cast<size_t>(index));
}

VarIndex ZELK_DataSource::FindVariable(std::string_view name) const {
  const auto& impl = *static_cast<const ProcedureDataSource&>(*this).impl_;
  Call call(impl.self, "FindVariable", std::string(name));
  return call.gives(Host::current().script().find(name));
}

ProcedureDataSource::ProcedureDataSource() : impl_(std::make_unique<Impl>()) {
  Call(impl_->self, "new").done();
}

ProcedureDataSource::~ProcedureDataSource() = default;

void ProcedureDataSource::Bootstrapping(bool supported) {
  Call(impl_->self, "Bootstrapping", supported).done();
}

bool ProcedureDataSource::FatalError() const {
  Call call(impl_->self, "FatalError");
  return call.gives(recording::flagOr(call, Host::current().fatal()));
}

int32_t ProcedureDataSource::GetNSplitVars() const {
  Call call(impl_->self, "GetNSplitVars");
  return call.gives(static_cast<int32_t>(Host::current().script().split.size()));
}

VarIndex ProcedureDataSource::GetSplitVarIndex(int32_t position) const {
  Call call(impl_->self, "GetSplitVarIndex", position);
  return call.gives(Host::current().script().split.at(static_cast<size_t>(position)));
}

bool ProcedureDataSource::SplitLayoutSeparate() const {
  Call call(impl_->self, "SplitLayoutSeparate");
  return call.gives(Host::current().script().separateSplitLayout);
}

VarIndex ProcedureDataSource::GetWeightVarIndex() const {
  Call call(impl_->self, "GetWeightVarIndex");
  return call.gives(Host::current().script().weight);
}

ZELK_InputCaseIterator* ProcedureDataSource::MakeIterator(const ZELK_CaseSelection* selection) {
  Call call(impl_->self, "MakeIterator", Raw{selection == nullptr ? "null" : "selection"});
  Host& host = Host::current();
  if (call.answer() != nullptr && *call.answer() == "null") host.raiseFatal();
  if (host.fatal()) {
    call.givesText("null");
    return nullptr;
  }
  auto feed = std::make_unique<ScriptedFeed>(impl_->columns);
  const Life& life = feed->life();
  call.givesText(life.name());
  return std::make_unique<ProcDSIterator>(std::move(feed)).release();
}

int QBOOTSTRAPPING() {
  Call call("QBOOTSTRAPPING", Call::May::kThrow);
  return call.gives(0);
}
