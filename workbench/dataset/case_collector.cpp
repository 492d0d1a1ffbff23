#include "workbench/dataset/case_collector.h"

#include <algorithm>

namespace workbench {
namespace {

/// When it is first asked whether counting pays; then whenever the cases have doubled.
constexpr int64_t kFirstCheck = 16'384;
/// Counting is worth its while when a combination stands for that many cases.
constexpr double kWorthCounting = 3.0;
/// So many cases more are taken for granted when nobody knows how many there are.
constexpr double kUnknownGrowth = 8.0;
/// Below so many different numbers a column always has codes.
constexpr size_t kAlwaysCoded = 65'536;
/// Codes of a column of numbers pay while a value occurs that often on average.
constexpr size_t kWorthCoding = 8;

}  // namespace

CaseCollector::CaseCollector(const std::vector<ValueKind>& kinds, CollapseMode collapse,
                             size_t memoryLimit, int64_t expectedCases)
    : numberCoders_(kinds.size()),
      textCoders_(kinds.size()),
      codes_(kinds.size()),
      counter_(kinds.size()),
      collapse_(collapse),
      memoryLimit_(memoryLimit),
      expectedCases_(expectedCases),
      counting_(collapse != CollapseMode::kNever && !kinds.empty()),
      nextCheck_(kFirstCheck) {
  for (const ValueKind kind : kinds) cases_.columns.emplace_back().kind = kind;
}

void CaseCollector::addNumbers(size_t column, const double* values, size_t count) {
  CaseColumn& into = cases_.columns[column];
  if (!into.coded) {
    into.numbers.insert(into.numbers.end(), values, values + count);
    return;
  }
  std::vector<uint32_t>& codes = codes_[column];
  codes.resize(count);
  NumberCoder& coder = numberCoders_[column];
  for (size_t row = 0; row < count; ++row) codes[row] = coder.code(values[row], into.numbers);
}

void CaseCollector::addTexts(size_t column, const std::string_view* values, size_t count) {
  std::vector<uint32_t>& codes = codes_[column];
  codes.resize(count);
  TextCoder& coder = textCoders_[column];
  TextList& texts = cases_.columns[column].texts;
  for (size_t row = 0; row < count; ++row) codes[row] = coder.code(values[row], texts);
}

void CaseCollector::addCodes(size_t column, const uint32_t* codes, size_t count) {
  codes_[column].assign(codes, codes + count);
}

bool CaseCollector::endBlock(size_t count, size_t otherMemory) {
  cases_.cases += static_cast<int64_t>(count);
  if (!cases_.complete) return false;
  if (counting_) {
    counter_.add(codes_, count);
    considerCounting();
  } else {
    appendRows(count);
  }
  if (counting_ && memory() + otherMemory > memoryLimit_) stopCounting();
  if (memory() + otherMemory <= memoryLimit_) return true;
  cases_.complete = false;
  for (CaseColumn& column : cases_.columns) {
    CaseColumn empty;
    empty.kind = column.kind;
    column = std::move(empty);
  }
  cases_.counts = {};
  cases_.rows = 0;
  numberCoders_.clear();
  textCoders_.clear();
  return false;
}

void CaseCollector::considerCounting() {
  if (collapse_ == CollapseMode::kAlways || cases_.cases < nextCheck_) return;
  nextCheck_ = 2 * cases_.cases;
  const auto seen = static_cast<double>(cases_.cases);
  const double all =
      expectedCases_ >= cases_.cases ? static_cast<double>(expectedCases_) : kUnknownGrowth * seen;
  if (counter_.estimatedCombinations() * kWorthCounting > all) stopCounting();
}

/// What was counted is kept; the cases to come are held one by one.
void CaseCollector::stopCounting() {
  counting_ = false;
  cases_.counts = counter_.counts();
  cases_.rows = counter_.combinations();
  for (size_t i = 0; i < codes_.size(); ++i) {
    const std::vector<uint32_t> codes = counter_.codesOf(i);
    cases_.columns[i].codes.append(codes.data(), codes.size());
  }
  counter_ = CombinationCounter(codes_.size());
}

void CaseCollector::appendRows(size_t count) {
  cases_.rows += count;
  for (size_t i = 0; i < codes_.size(); ++i) {
    CaseColumn& column = cases_.columns[i];
    if (!column.coded) continue;
    column.codes.append(codes_[i].data(), count);
    const size_t values = column.numbers.size();
    if (values > kAlwaysCoded && values * kWorthCoding > cases_.rows) giveUpCodes(i);
  }
}

void CaseCollector::giveUpCodes(size_t column) {
  cases_.columns[column].decode(cases_.rows);
  numberCoders_[column] = NumberCoder();
  codes_[column] = {};
}

size_t CaseCollector::memory() const {
  size_t total = cases_.memory() + counter_.memory();
  for (size_t i = 0; i < codes_.size(); ++i) {
    total += numberCoders_[i].memory() + textCoders_[i].memory();
  }
  return total;
}

CodedCases CaseCollector::finish() {
  if (counting_) stopCounting();
  return std::move(cases_);
}

}  // namespace workbench
