#include "workbench/dataset/typed_blocks.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/dataset/typed_rules.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"
#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

using Name = ColumnType::Name;

/// Texts whose values decide what they are: those of paths, and those that a dictionary makes
/// something else.
bool isSpelledColumn(const TypedColumnFacts& column, const ColumnType& type) {
  if (column.fromPath) return true;
  if (type.name == Name::kString && type.codes.empty()) return false;
  return column.isText && (type.name != Name::kDetected || !type.codes.empty());
}

}  // namespace

bool isMadeText(const TypedColumnFacts& column, const ColumnType& type) {
  return !column.isText && type.name == Name::kString &&
         (type.codes.empty() || column.categories.empty());
}

TypedBlocks::TypedBlocks(const std::string& label, const std::vector<TypedColumnFacts>& columns,
                         const CaseRequest& request, const FieldRules& rules,
                         std::unique_ptr<TypedRows> rows)
    : label_(label), rules_(rules), rows_(std::move(rows)) {
  for (const ColumnRequest& wanted : request.columns) {
    columns_.push_back(columnOf(columns[wanted.column], wanted.type));
  }
}

TypedBlocks::Column TypedBlocks::columnOf(const TypedColumnFacts& column,
                                          const ColumnType& type) const {
  Column made;
  made.name = column.name;
  made.isText = column.isText || isMadeText(column, type);
  made.native = column.kind;
  made.extendedMissing = column.extendedMissing;
  made.wanted = type;
  if (isSpelledColumn(column, type) || (isMadeText(column, type) && !type.codes.empty())) {
    made.spelled.emplace(label_ + ", case", column.name, rules_, type);
  }
  made.categories = categoryNumbers(column.categories, type);
  return made;
}

bool TypedBlocks::next() {
  casesBefore_ += static_cast<int64_t>(cases_);
  const bool more = rows_->next();
  cases_ = more ? rows_->cases() : 0;
  return more;
}

std::vector<ValueKind> TypedBlocks::kinds() const {
  std::vector<ValueKind> kinds;
  for (const Column& column : columns_) {
    kinds.push_back(column.isText || column.spelled
                        ? ValueKind::kString
                        : wantedKind(column.wanted.name, column.native));
  }
  return kinds;
}

bool TypedBlocks::anySpelled() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const Column& column) { return column.spelled.has_value(); });
}

void TypedBlocks::refuse(const Column& column, size_t row, const std::string& what) const {
  throw DataError(fmt::format("{}, case {}: {}: {}", label_, caseNumber(row), column.name, what));
}

const double* TypedBlocks::numbers(size_t position) {
  Column& column = columns_[position];
  column.numbers.resize(cases());
  ValueFlaw flaw;
  if (!rows_->numbers(position, column.numbers.data(), flaw)) {
    refuse(column, flaw.row, fmt::format("{} {}.", excerpt(flaw.value), flaw.reason));
  }
  for (double& value : column.numbers) value = normalNumber(value);
  if (!column.categories.empty()) {
    for (double& value : column.numbers) {
      if (value != kSystemMissing) value = column.categories[static_cast<size_t>(value) - 1];
    }
  }
  if (column.wanted.name != Name::kDetected) refuseWrongType(column);
  return column.numbers.data();
}

const uint8_t* TypedBlocks::bytes(size_t position) {
  Column& column = columns_[position];
  const bool anyNumber = column.wanted.name == Name::kDetected ||
                         column.wanted.name == Name::kNumber ||
                         column.wanted.name == Name::kInteger;
  if (!anyNumber || !column.categories.empty()) return nullptr;
  column.bytes.resize(cases());
  return rows_->bytes(position, column.bytes.data()) ? column.bytes.data() : nullptr;
}

void TypedBlocks::refuseWrongType(Column& column) const {
  for (size_t row = 0; row < column.numbers.size(); ++row) {
    double& value = column.numbers[row];
    if (column.extendedMissing && isExtendedMissing(value)) continue;
    const std::string wrong = wrongType(column.wanted, value);
    if (!wrong.empty()) refuse(column, row, wrong);
  }
}

void TypedBlocks::readTexts(size_t position) {
  Column& column = columns_[position];
  column.texts.resize(cases());
  rows_->texts(position, column.texts.data());
  for (size_t row = 0; row < column.texts.size(); ++row) {
    if (column.texts[row].find('\0') != std::string_view::npos) {
      refuse(column, row, "the text holds a NUL character; remove it.");
    }
  }
}

const std::string_view* TypedBlocks::texts(size_t position) {
  readTexts(position);
  Column& column = columns_[position];
  for (size_t row = 0; row < column.texts.size(); ++row) {
    const KeptText kept = keptText(column.texts[row], rules_);
    if (!kept.flaw.empty()) refuse(column, row, kept.flaw);
    column.texts[row] = kept.text;
  }
  return column.texts.data();
}

const uint32_t* TypedBlocks::codes(size_t position) {
  readTexts(position);
  Column& column = columns_[position];
  column.codes.resize(cases());
  for (size_t row = 0; row < cases(); ++row) {
    column.codes[row] = column.spelled->code(column.spelling, column.texts[row], caseNumber(row));
  }
  return column.codes.data();
}

void TypedBlocks::note(size_t position) {
  Column& column = columns_[position];
  if (!column.spelled) return;
  readTexts(position);
  for (size_t row = 0; row < cases(); ++row) {
    column.spelled->note(column.spelling, column.texts[row]);
  }
}

void TypedBlocks::forgetTexts() {
  for (Column& column : columns_) {
    if (column.spelled) column.spelled->forget();
  }
}

void TypedBlocks::values(size_t position, std::vector<double>& numbersOut,
                         std::vector<std::string_view>& textsOut) {
  Column& column = columns_[position];
  numbersOut.clear();
  textsOut.clear();
  if (!column.spelled) {
    if (column.isText) {
      const std::string_view* values = texts(position);
      textsOut.assign(values, values + cases());
    } else {
      const double* values = numbers(position);
      numbersOut.assign(values, values + cases());
    }
    return;
  }
  readTexts(position);
  const bool isText = column.spelled->valueKind() == ValueKind::kString;
  for (size_t row = 0; row < cases(); ++row) {
    const std::string_view text = column.texts[row];
    if (isText) {
      textsOut.push_back(column.spelled->textOf(column.spelling, text, caseNumber(row)));
    } else {
      numbersOut.push_back(column.spelled->numberOf(column.spelling, text, caseNumber(row)));
    }
  }
}

void TypedBlocks::finish(size_t position, bool complete, CaseColumn& into) const {
  const SpelledColumn& column = *columns_[position].spelled;
  if (complete) {
    column.refuseContradictions();
    column.finish(into);
  }
  into.kind = column.valueKind();
}

std::vector<SpelledColumn> TypedBlocks::takeSpelled() {
  std::vector<SpelledColumn> spelled;
  for (Column& column : columns_) {
    if (column.spelled) spelled.push_back(std::move(*column.spelled));
  }
  return spelled;
}

void TypedBlocks::understandAs(const std::vector<SpelledColumn>& spelled) {
  size_t next = 0;
  for (Column& column : columns_) {
    if (column.spelled) column.spelled = spelled[next++];
  }
}

}  // namespace workbench
