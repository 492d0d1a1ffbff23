#include "workbench/dataset/case_collector.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace workbench {
namespace {

/// Below this many different numbers a column always has codes.
constexpr size_t kAlwaysCoded = 65'536;
/// Codes of a column of numbers pay while a value occurs that often on average.
constexpr size_t kWorthCoding = 8;
constexpr uint32_t kNoCode = 0xFFFFFFFF;

}  // namespace

CaseCollector::CaseCollector(const std::vector<ValueKind>& kinds, CollapseMode collapse,
                             size_t memoryLimit)
    : numberCoders_(kinds.size()),
      textCoders_(kinds.size()),
      codes_(kinds.size()),
      codeCounts_(kinds.size(), 1),
      counted_(kinds.size()),
      collapse_(collapse),
      memoryLimit_(memoryLimit),
      counting_(collapse != CollapseMode::kNever && !kinds.empty()) {
  for (const ValueKind kind : kinds) cases_.columns.emplace_back().kind = kind;
}

void CaseCollector::addNumbers(size_t column, const double* values, size_t count) {
  CaseColumn& into = cases_.columns[column];
  if (!into.coded) {
    into.numbers.insert(into.numbers.end(), values, values + count);
    return;
  }
  codes_[column].resize(count);
  numberCoders_[column].code(values, count, into.numbers, codes_[column].data());
  codeCounts_[column] = std::max<size_t>(1, into.numbers.size());
}

void CaseCollector::addBytes(size_t column, const uint8_t* values, uint8_t missing, size_t count) {
  CaseColumn& into = cases_.columns[column];
  const auto numberOf = [&](uint8_t value) {
    return value == missing ? kSystemMissing : static_cast<double>(value);
  };
  if (!into.coded) {
    std::transform(values, values + count, std::back_inserter(into.numbers), numberOf);
    return;
  }
  // Few different values are looked up before many are coded.
  std::array<uint32_t, 256> codeOf;
  codeOf.fill(kNoCode);
  std::vector<uint32_t>& codes = codes_[column];
  codes.resize(count);
  for (size_t row = 0; row < count; ++row) {
    uint32_t& code = codeOf[values[row]];
    if (code == kNoCode) code = numberCoders_[column].code(numberOf(values[row]), into.numbers);
    codes[row] = code;
  }
  codeCounts_[column] = std::max<size_t>(1, into.numbers.size());
}

void CaseCollector::addTexts(size_t column, const std::string_view* values, size_t count) {
  std::vector<uint32_t>& codes = codes_[column];
  codes.resize(count);
  TextCoder& coder = textCoders_[column];
  TextList& texts = cases_.columns[column].texts;
  for (size_t row = 0; row < count; ++row) codes[row] = coder.code(values[row], texts);
  codeCounts_[column] = std::max<size_t>(1, texts.size());
}

void CaseCollector::addCodes(size_t column, const uint32_t* codes, size_t count) {
  codes_[column].assign(codes, codes + count);
  if (count == 0) return;
  codeCounts_[column] =
      std::max(codeCounts_[column], *std::max_element(codes, codes + count) + size_t{1});
}

bool CaseCollector::endBlock(size_t count, size_t otherMemory) {
  cases_.cases += static_cast<int64_t>(count);
  if (!cases_.complete) return false;
  if (counting_) {
    countBlock(count);
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

void CaseCollector::countBlock(size_t count) {
  counted_.fit(codeCounts_);
  combinations_.assign(count * counted_.words(), 0);
  for (size_t i = 0; i < codes_.size(); ++i) {
    counted_.pack(i, codes_[i].data(), count, combinations_.data());
  }
  counted_.addAll(combinations_.data(), count);
  if (collapse_ == CollapseMode::kAuto && !worthCounting_.stillPays(counted_, count)) {
    stopCounting();
  }
}

/// What was counted is kept; the cases to come are held one by one.
void CaseCollector::stopCounting() {
  counting_ = false;
  cases_.rows = counted_.size();
  cases_.counts.reserve(cases_.rows);
  counted_.forEach(
      [&](const uint64_t*, int64_t count) { cases_.counts.push_back(static_cast<double>(count)); });
  std::vector<uint32_t> codes;
  for (size_t i = 0; i < codes_.size(); ++i) {
    codes.clear();
    counted_.forEach([&](const uint64_t* combination, int64_t) {
      codes.push_back(counted_.codeIn(combination, i));
    });
    cases_.columns[i].codes.append(codes.data(), codes.size());
  }
  counted_ = CombinationTable(codes_.size());
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
  size_t total = cases_.memory() + counted_.memory();
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
