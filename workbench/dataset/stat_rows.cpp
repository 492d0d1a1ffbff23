#include "workbench/dataset/stat_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/values/data_error.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

constexpr size_t kNowhere = static_cast<size_t>(-1);

/// A column of the request.
struct Wanted {
  size_t column = 0;
  bool asCount = false;     // a number, though it is shown as a date or time
  size_t place = kNowhere;  // among the columns that are read of the part at hand
  StatUnit unit = StatUnit::kNumber;
  std::vector<std::string> made;  // texts of numbers, of the block
};

class StatRows final : public TypedRows {
 public:
  StatRows(const std::vector<StatPart>& parts, const std::vector<TypedColumnFacts>& columns,
           const CaseRequest& request, std::function<void(double, int64_t)> progress);

  bool next() override;
  size_t cases() const override { return reader_ == nullptr ? 0 : reader_->cases(); }
  bool numbers(size_t column, double* out, ValueFlaw& flaw) override;
  bool bytes(size_t column, uint8_t* out) override;
  void texts(size_t column, std::string_view* out) override;

 private:
  void openPart();
  void report() const;
  std::string textOf(const Wanted& wanted, double value) const;

  const std::vector<StatPart>& parts_;
  const std::vector<TypedColumnFacts>& columns_;
  std::function<void(double, int64_t)> progress_;
  std::vector<Wanted> wanted_;
  size_t next_ = 0;  // the part to be opened next
  std::unique_ptr<StatCaseReader> reader_;
  uint64_t bytesBefore_ = 0;
  uint64_t casesBefore_ = 0;
  uint64_t allBytes_ = 0;
};

StatRows::StatRows(const std::vector<StatPart>& parts, const std::vector<TypedColumnFacts>& columns,
                   const CaseRequest& request, std::function<void(double, int64_t)> progress)
    : parts_(parts), columns_(columns), progress_(std::move(progress)) {
  for (const ColumnRequest& each : request.columns) {
    Wanted& wanted = wanted_.emplace_back();
    wanted.column = each.column;
    wanted.asCount = each.type.asCount;
  }
  for (const StatPart& part : parts_) allBytes_ += part.bytes;
}

void StatRows::openPart() {
  const StatPart& part = parts_[next_++];
  std::vector<size_t> read;
  for (Wanted& wanted : wanted_) {
    if (columns_[wanted.column].fromPath) continue;
    const size_t place = part.places.at(columns_[wanted.column].name);
    wanted.unit = wanted.asCount ? StatUnit::kNumber : part.head.columns[place].unit;
    const auto known = std::find(read.begin(), read.end(), place);
    wanted.place = static_cast<size_t>(known - read.begin());
    if (known == read.end()) read.push_back(place);
  }
  reader_ = std::make_unique<StatCaseReader>(part.source, part.head, read);
}

bool StatRows::next() {
  for (;;) {
    if (reader_ == nullptr) {
      if (next_ == parts_.size()) return false;
      openPart();
    }
    if (reader_->next()) {
      report();
      return true;
    }
    casesBefore_ += reader_->casesBefore();
    bytesBefore_ += parts_[next_ - 1].bytes;
    reader_.reset();
  }
}

void StatRows::report() const {
  const auto bytes = static_cast<double>(bytesBefore_ + reader_->position());
  const double percent = allBytes_ == 0 ? -1.0 : 100.0 * bytes / static_cast<double>(allBytes_);
  progress_(std::min(percent, 100.0),
            static_cast<int64_t>(casesBefore_ + reader_->casesBefore() + reader_->cases()));
}

bool StatRows::numbers(size_t column, double* out, ValueFlaw& flaw) {
  const Wanted& wanted = wanted_[column];
  const std::vector<double>& counts = reader_->numbers(wanted.place);
  if (wanted.unit == StatUnit::kNumber) {
    std::copy(counts.begin(), counts.end(), out);
    return true;
  }
  for (size_t row = 0; row < counts.size(); ++row) {
    out[row] = counts[row];
    if (std::isnan(counts[row]) || isExtendedMissing(counts[row])) continue;
    std::string_view reason;
    const std::optional<double> moment = momentOf(wanted.unit, counts[row], reason);
    if (!moment) {
      flaw = {row, shortestNumber(counts[row]), std::string(reason)};
      return false;
    }
    out[row] = *moment;
  }
  return true;
}

bool StatRows::bytes(size_t column, uint8_t* out) {
  const Wanted& wanted = wanted_[column];
  if (wanted.unit != StatUnit::kNumber) return false;
  for (const double count : reader_->numbers(wanted.place)) {
    if (std::isnan(count)) {
      *out++ = kMissingByte;
      continue;
    }
    if (!(count >= 0.0 && count < kMissingByte)) return false;
    *out = static_cast<uint8_t>(count);
    if (*out++ != count) return false;
  }
  return true;
}

/// A missing value is a blank text, whatever its letter.
std::string StatRows::textOf(const Wanted& wanted, double value) const {
  if (std::isnan(value) || isExtendedMissing(value)) return {};
  Variable variable;
  variable.kind = columns_[wanted.column].kind;
  return valueText(variable, value);
}

void StatRows::texts(size_t column, std::string_view* out) {
  Wanted& wanted = wanted_[column];
  if (columns_[wanted.column].fromPath) {
    const size_t first = columns_.size() - parts_[next_ - 1].pathValues.size();
    std::fill_n(out, cases(), parts_[next_ - 1].pathValues[wanted.column - first]);
    return;
  }
  if (columns_[wanted.column].isText) {
    const std::vector<std::string_view>& texts = reader_->texts(wanted.place);
    std::copy(texts.begin(), texts.end(), out);
    return;
  }
  std::vector<double> values(cases());
  ValueFlaw flaw;
  if (!numbers(column, values.data(), flaw)) {
    throw DataError(fmt::format("{}, case {}: {}: {} {}.", parts_[next_ - 1].source.label,
                                reader_->casesBefore() + flaw.row + 1, columns_[wanted.column].name,
                                flaw.value, flaw.reason));
  }
  wanted.made.clear();
  for (const double value : values) wanted.made.push_back(textOf(wanted, value));
  std::copy(wanted.made.begin(), wanted.made.end(), out);
}

}  // namespace

std::unique_ptr<TypedRows> openStatRows(const std::vector<StatPart>& parts,
                                        const std::vector<TypedColumnFacts>& columns,
                                        const CaseRequest& request,
                                        std::function<void(double, int64_t)> progress) {
  return std::make_unique<StatRows>(parts, columns, request, std::move(progress));
}

}  // namespace workbench
