#include "workbench/advice/case_tally.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "workbench/output/distinguish.h"
#include "workbench/output/labels.h"

namespace workbench {
namespace {

double toDigits(double value, int digits) {
  const std::string text = fmt::format("{:.{}g}", value, digits);
  double rounded = value;
  std::from_chars(text.data(), text.data() + text.size(), rounded);
  return rounded;
}

/// The digits of a sum that the order of addition never reaches. First without the last bits, which
/// it does reach, and which would decide about sums that lie halfway between two of ten digits.
double tenDigits(double value) { return toDigits(toDigits(value, 15), 10); }

LabelData splitName(const ActiveDataset& dataset, VarIndex index) {
  LabelData label;
  label.owner = dataset.declaration(index).name;
  label.text = dataset.declaration(index).shownName();
  return label;
}

/// Names of the split variables as shown, told apart.
std::vector<std::string> splitNames(const ActiveDataset& dataset) {
  std::vector<LabelData> labels;
  for (const VarIndex index : dataset.splitVariables()) labels.push_back(splitName(dataset, index));
  std::vector<LabelData*> alike;
  for (LabelData& label : labels) alike.push_back(&label);
  distinguish(alike);
  std::vector<std::string> names;
  for (const LabelData& label : labels) names.push_back(label.text);
  return names;
}

}  // namespace

void CarefulSum::add(double value) {
  const double sum = sum_ + value;
  if (std::isfinite(sum)) {
    rest_ += std::fabs(sum_) >= std::fabs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
  }
  sum_ = sum;
}

std::vector<SplitValue> levelValues(const RuleFacts& rule, const Variable& variable) {
  std::vector<SplitValue> values;
  const LabelIndex labels(variable);
  for (const TokenInfoObj& token : rule.values) {
    const LevelForm form =
        token.kind() == TokenInfoObj::Kind::kString ? LevelForm::kQuoted : LevelForm::kBare;
    LevelReading reading = readLevel(variable, labels, token.getText(), form);
    if (reading.value) values.push_back(std::move(*reading.value));
  }
  return values;
}

CaseTally::CaseTally(ActiveDataset& dataset, const CommandFacts& facts, bool forAdvice)
    : dataset_(dataset), facts_(facts), forAdvice_(forAdvice) {}

CaseTally::~CaseTally() = default;

ColumnQuestions CaseTally::questionsAbout(VarIndex index, const Variable& entry) const {
  ColumnQuestions questions;
  questions.includesUserMissing = facts_.includesUserMissing;
  if (!forAdvice_) return questions;
  if (index == facts_.grouping) {
    questions.everyValue = facts_.groups.rule == ValueRule::kLevel;
    questions.wanted = levelValues(facts_.groups, entry);
    if (facts_.groups.values.empty()) questions.wanted = {1.0, 2.0};
    if (!questions.everyValue) questions.wanted.clear();
    return questions;
  }
  questions.everyValue = facts_.success.rule == ValueRule::kLevel;
  if (questions.everyValue) questions.wanted = levelValues(facts_.success, entry);
  const bool split = !dataset_.splitVariables().empty();
  questions.firstOfGroup = split && facts_.success.rule == ValueRule::kFirst;
  questions.lastOfGroup = split && facts_.success.rule == ValueRule::kLast;
  return questions;
}

void CaseTally::begin() {
  begun_ = true;
  weighted_ = dataset_.weightVariable() >= 0;
  for (const VarIndex index : facts_.variables()) {
    auto entry = std::make_unique<Variable>(dataset_.variable(index));
    ColumnQuestions questions = questionsAbout(index, *entry);
    const bool extremes = questions.firstOfGroup || questions.lastOfGroup;
    auto observed = observeColumn(*entry, std::move(questions));
    columns_.push_back({index, std::move(entry), std::move(observed), extremes, {}, false});
  }
}

/// Cases drawn anew were not read from the data.
bool CaseTally::isResample() const {
  const std::vector<VarIndex>& split = dataset_.splitVariables();
  const std::vector<SplitValue>& values = dataset_.currentSplit();
  for (size_t i = 0; i < std::min(split.size(), values.size()); ++i) {
    if (dataset_.declaration(split[i]).name != kSampleVariable) continue;
    const auto* number = std::get_if<double>(&values[i]);
    return number != nullptr && *number != 0.0;
  }
  return false;
}

void CaseTally::takeCases(const CountedChunk& chunk) {
  if (!begun_) begin();
  if (isResample()) return;
  if (!inGroup_) {
    inGroup_ = true;
    groups_.emplace_back();
    const std::vector<SplitValue>& split = dataset_.currentSplit();
    splitValues_.insert(splitValues_.end(), split.begin(), split.end());
    for (size_t i = 0; i < split.size(); ++i) {
      groupNames_.note(dataset_.splitVariables()[i], split[i]);
    }
    variableCases_.resize(groups_.size() * columns_.size());
  }
  const auto rows = static_cast<size_t>(chunk.count);
  if (kept_.size() < rows) {
    kept_.resize(rows);
    isKept_.resize(rows);
    isComplete_.resize(rows);
    marks_.resize(rows);
    for (Column& column : columns_) column.classes.resize(rows);
  }
  countWeights(chunk);
  countVariables(chunk);
  if (forAdvice_) observeValues(chunk);
}

void CaseTally::countWeights(const CountedChunk& chunk) {
  Totals& totals = groups_.back();
  const auto rows = static_cast<size_t>(chunk.count);
  allSingle_ = !weighted_ && chunk.caseCounts == nullptr;
  if (allSingle_) {
    std::fill_n(kept_.begin(), rows, 1.0);
    std::fill_n(isKept_.begin(), rows, uint8_t{1});
    totals.read += chunk.count;
    keptInAll_ = static_cast<double>(rows);
    return;
  }
  keptInAll_ = 0.0;
  for (size_t row = 0; row < rows; ++row) {
    const double cases = chunk.caseCounts == nullptr ? 1.0 : chunk.caseCounts[row];
    const double weight = chunk.weights[row];
    const double raw = chunk.rawWeights == nullptr ? weight : chunk.rawWeights[row];
    const bool single = chunk.caseCounts == nullptr;
    const bool kept = weight != kSystemMissing && (!single || weight >= 0.5);
    const double rounded = !kept ? 0.0 : single ? std::floor(weight + 0.5) : weight;
    if (raw != kSystemMissing) totals.weight.add(raw);
    if (raw > 0.0) positiveWeight_.add(raw);
    totals.rounded += rounded;
    roundedWeight_ += rounded;
    totals.read += static_cast<int64_t>(cases);
    totals.dropped += kept ? 0 : static_cast<int64_t>(cases);
    kept_[row] = kept ? cases : 0.0;
    keptInAll_ += kept_[row];
    isKept_[row] = kept ? 1 : 0;
  }
}

bool CaseTally::isMissing(const Column& column, ValueClass type) const {
  if (type == ValueClass::kValid) return false;
  if (!facts_.includesUserMissing) return true;
  return type == ValueClass::kSystemMissing && !column.entry->isString();
}

/// The quick way, for rows that are one case each and none of them dropped.
void CaseTally::countSingle(const Column& column, size_t rows, bool userIsMissing,
                            VariableCases& cases) {
  uint32_t user = 0;
  uint32_t system = 0;
  for (size_t row = 0; row < rows; ++row) {
    const ValueClass type = column.classes[row];
    const auto isUser = static_cast<uint8_t>(type == ValueClass::kUserMissing);
    const auto isSystem = static_cast<uint8_t>(type == ValueClass::kSystemMissing);
    user += isUser;
    system += isSystem;
    const auto missing = static_cast<uint8_t>(isSystem | (isUser & uint8_t{userIsMissing}));
    isComplete_[row] &= static_cast<uint8_t>(missing ^ 1U);
  }
  cases.valid += static_cast<int64_t>(rows - user - system);
  cases.userMissing += user;
  cases.systemMissing += system;
}

void CaseTally::countVariables(const CountedChunk& chunk) {
  VariableCases* const cases = variableCases_.data() + variableCases_.size() - columns_.size();
  const auto rows = static_cast<size_t>(chunk.count);
  std::copy_n(isKept_.begin(), rows, isComplete_.begin());
  for (size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    const ColumnView view = chunk.columns[column.index];
    column.allValid =
        column.observed->classify(view.words, view.stride, rows, column.classes.data());
    if (column.allValid) {
      cases[i].valid += static_cast<int64_t>(keptInAll_);
      continue;
    }
    const bool userIsMissing = isMissing(column, ValueClass::kUserMissing);
    if (allSingle_) {
      countSingle(column, rows, userIsMissing, cases[i]);
      continue;
    }
    double valid = 0.0;
    double user = 0.0;
    double system = 0.0;
    for (size_t row = 0; row < rows; ++row) {
      const ValueClass type = column.classes[row];
      valid += type == ValueClass::kValid ? kept_[row] : 0.0;
      user += type == ValueClass::kUserMissing ? kept_[row] : 0.0;
      system += type == ValueClass::kSystemMissing ? kept_[row] : 0.0;
      const bool missing = (type == ValueClass::kSystemMissing) |
                           ((type == ValueClass::kUserMissing) & userIsMissing);
      isComplete_[row] &= static_cast<uint8_t>(!missing);
    }
    cases[i].valid += static_cast<int64_t>(valid);
    cases[i].userMissing += static_cast<int64_t>(user);
    cases[i].systemMissing += static_cast<int64_t>(system);
  }
  double complete = 0.0;
  for (size_t row = 0; row < rows; ++row) complete += isComplete_[row] != 0 ? kept_[row] : 0.0;
  groups_.back().complete += static_cast<int64_t>(complete);
}

/// The rows whose values are valid and which the weight does not drop; until the next call.
const uint8_t* CaseTally::markValid(const Column& column) {
  if (column.allValid) return isKept_.data();
  const bool userIsMissing = isMissing(column, ValueClass::kUserMissing);
  for (size_t row = 0; row < marks_.size(); ++row) {
    const ValueClass type = column.classes[row];
    const bool missing =
        (type == ValueClass::kSystemMissing) | ((type == ValueClass::kUserMissing) & userIsMissing);
    marks_[row] = static_cast<uint8_t>(isKept_[row] & static_cast<uint8_t>(!missing));
  }
  return marks_.data();
}

void CaseTally::observeValues(const CountedChunk& chunk) {
  const auto rows = static_cast<size_t>(chunk.count);
  marks_.resize(rows);
  for (Column& column : columns_) {
    const ColumnView view = chunk.columns[column.index];
    const uint8_t* const marks = markValid(column);
    column.observed->take(view.words, view.stride, rows, marks);
    if (!column.extremesOfGroups) continue;
    if (facts_.listwise) {
      for (size_t row = 0; row < rows; ++row) marks_[row] = marks[row] & isComplete_[row];
    }
    column.observed->takeOfGroup(view.words, view.stride, rows,
                                 facts_.listwise ? marks_.data() : marks);
  }
}

void CaseTally::endGroup() {
  if (!inGroup_) return;
  inGroup_ = false;
  for (Column& column : columns_) {
    if (column.extremesOfGroups) column.observed->endGroup(groups_.size() - 1);
  }
}

void CaseTally::endPass() {
  if (!begun_) begin();
  endGroup();
  complete_ = true;
}

CaseTotals CaseTally::shownTotals(const Totals& totals, std::vector<VariableCases> variables) {
  return {totals.read,    totals.dropped,      totals.complete, tenDigits(totals.weight.value()),
          totals.rounded, std::move(variables)};
}

CaseReport CaseTally::report() const {
  CaseReport report;
  report.weighted = weighted_;
  for (const Column& column : columns_) report.variables.push_back(column.entry->name);
  report.splitVariables = splitNames(dataset_);
  const std::vector<VarIndex>& split = dataset_.splitVariables();
  Totals all;
  std::vector<VariableCases> allCases(columns_.size());
  for (size_t group = 0; group < groups_.size(); ++group) {
    const Totals& totals = groups_[group];
    all.read += totals.read;
    all.dropped += totals.dropped;
    all.complete += totals.complete;
    all.rounded += totals.rounded;
    all.weight.add(totals.weight.value());
    const VariableCases* const cases = variableCases_.data() + group * columns_.size();
    for (size_t i = 0; i < columns_.size(); ++i) {
      allCases[i].valid += cases[i].valid;
      allCases[i].userMissing += cases[i].userMissing;
      allCases[i].systemMissing += cases[i].systemMissing;
    }
    if (split.empty()) continue;
    CaseReport::Group& shown = report.groups.emplace_back();
    for (size_t i = 0; i < split.size(); ++i) {
      shown.split.push_back(groupNames_.text(split[i], splitValue(group, i)));
    }
    shown.cases = shownTotals(totals, {cases, cases + columns_.size()});
  }
  report.all = shownTotals(all, std::move(allCases));
  return report;
}

std::string CaseTally::groupText(size_t group) const {
  const std::vector<std::string> names = splitNames(dataset_);
  std::string text;
  for (size_t i = 0; i < names.size(); ++i) {
    text += fmt::format("{}{} = {}", text.empty() ? "" : ", ", names[i],
                        groupNames_.text(dataset_.splitVariables()[i], splitValue(group, i)));
  }
  return text;
}

}  // namespace workbench
