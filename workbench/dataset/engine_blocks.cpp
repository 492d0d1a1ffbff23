#include "workbench/dataset/engine_blocks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "workbench/dataset/value_text.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr double kDaySeconds = 86'400;
using Name = ColumnType::Name;

bool isPlainText(const EngineType& type) { return kindOf(type) == EngineKind::kText; }

/// Texts whose values decide what they are: those of paths, and those that a dictionary makes
/// something else.
bool isSpelledColumn(const RelationColumn& column, const ColumnType& type) {
  if (column.fromPath) return true;
  if (type.name == Name::kString && type.codes.empty()) return false;
  return isPlainText(column.type) && (type.name != Name::kDetected || !type.codes.empty());
}

/// Whether a column that is not text is to be read as text.
bool isMadeText(const RelationColumn& column, const ColumnType& type) {
  return !isPlainText(column.type) && type.name == Name::kString &&
         (type.codes.empty() || column.type.categories.empty());
}

std::string expressionOf(const RelationColumn& column, const ColumnType& type) {
  const std::string name = quotedName(column.name);
  if (isMadeText(column, type)) return fmt::format("CAST({} AS VARCHAR)", name);
  return typedExpression(column.type, name);
}

}  // namespace

ValueKind valueKindOf(EngineKind kind) {
  switch (kind) {
    case EngineKind::kBoolean:
      return ValueKind::kBoolean;
    case EngineKind::kDate:
      return ValueKind::kDate;
    case EngineKind::kTime:
      return ValueKind::kTime;
    case EngineKind::kDateTime:
    case EngineKind::kZonedDateTime:
      return ValueKind::kDateTime;
    case EngineKind::kText:
      return ValueKind::kString;
    case EngineKind::kNumber:
    case EngineKind::kUnusable:
      break;
  }
  return ValueKind::kNumber;
}

EngineBlocks::EngineBlocks(Relation& relation, const CaseRequest& request, const FieldRules& rules)
    : label_(relation.label()),
      rules_(rules),
      query_(relation.database(), sqlOf(relation, request)) {
  for (const ColumnRequest& wanted : request.columns) {
    columns_.push_back(columnOf(relation.columns()[wanted.column], wanted.type));
  }
}

EngineBlocks::Column EngineBlocks::columnOf(const RelationColumn& column,
                                            const ColumnType& type) const {
  Column made{column.name,
              isPlainText(column.type) || isMadeText(column, type),
              valueKindOf(kindOf(column.type)),
              TypedColumn(column.type),
              type.name,
              {},
              {},
              Spelling::kField,
              {},
              {},
              {},
              {}};
  if (isSpelledColumn(column, type) || (isMadeText(column, type) && !type.codes.empty())) {
    made.spelled.emplace(label_ + ", case", column.name, rules_, type);
  }
  for (const std::string& text : column.type.categories) {
    const auto found = std::find_if(type.codes.begin(), type.codes.end(),
                                    [&](const auto& entry) { return entry.first == text; });
    made.categories.push_back(found == type.codes.end() ? kSystemMissing : found->second);
  }
  return made;
}

std::string EngineBlocks::sqlOf(const Relation& relation, const CaseRequest& request) {
  std::string list;
  for (const ColumnRequest& wanted : request.columns) {
    list += fmt::format("{}{}", list.empty() ? "" : ", ",
                        expressionOf(relation.columns()[wanted.column], wanted.type));
  }
  // Cases count even when nothing of them is looked at.
  return fmt::format("SELECT {} FROM {}", list.empty() ? "1" : list, relation.sql());
}

bool EngineBlocks::next() {
  casesBefore_ += static_cast<int64_t>(chunk_.size());
  chunk_ = query_.fetch();
  return static_cast<bool>(chunk_);
}

std::vector<ValueKind> EngineBlocks::kinds() const {
  std::vector<ValueKind> kinds;
  for (const Column& column : columns_) {
    ValueKind kind = ValueKind::kNumber;
    if (column.isText || column.spelled) {
      kind = ValueKind::kString;
    } else if (column.wanted == Name::kDate || column.wanted == Name::kDateTime) {
      kind = column.wanted == Name::kDate ? ValueKind::kDate : ValueKind::kDateTime;
    } else if (column.wanted == Name::kBoolean) {
      kind = ValueKind::kBoolean;
    } else if (column.wanted == Name::kDetected || column.wanted == Name::kTime) {
      kind = column.native;
    }
    kinds.push_back(kind);
  }
  return kinds;
}

bool EngineBlocks::anySpelled() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const Column& column) { return column.spelled.has_value(); });
}

void EngineBlocks::refuse(const Column& column, size_t row, const std::string& what) const {
  throw DataError(fmt::format("{}, case {}: {}: {}", label_, caseNumber(row), column.name, what));
}

const double* EngineBlocks::numbers(size_t position) {
  Column& column = columns_[position];
  column.numbers.resize(cases());
  TypedColumn::Flaw flaw;
  if (!column.type.numbers(chunk_, position, column.numbers.data(), flaw)) {
    refuse(column, flaw.row, fmt::format("{} {}.", excerpt(flaw.value), flaw.reason));
  }
  for (double& value : column.numbers) value = normalNumber(value);
  if (!column.categories.empty()) {
    for (double& value : column.numbers) {
      if (value != kSystemMissing) value = column.categories[static_cast<size_t>(value) - 1];
    }
  }
  if (column.wanted != Name::kDetected) refuseWrongType(column);
  return column.numbers.data();
}

const uint8_t* EngineBlocks::bytes(size_t position) {
  Column& column = columns_[position];
  const bool anyNumber = column.wanted == Name::kDetected || column.wanted == Name::kNumber ||
                         column.wanted == Name::kInteger;
  if (!anyNumber || !column.categories.empty()) return nullptr;
  column.bytes.resize(cases());
  return column.type.bytes(chunk_, position, column.bytes.data()) ? column.bytes.data() : nullptr;
}

void EngineBlocks::refuseWrongType(const Column& column) const {
  for (size_t row = 0; row < column.numbers.size(); ++row) {
    const double value = column.numbers[row];
    if (value == kSystemMissing) continue;
    if (column.wanted == Name::kInteger && std::isfinite(value) && value != std::trunc(value)) {
      refuse(column, row,
             fmt::format("{} is not a whole number, though the dictionary gives the type integer.",
                         shortestNumber(value)));
    }
    if (column.wanted == Name::kBoolean && value != 0.0 && value != 1.0) {
      refuse(column, row,
             fmt::format("{} is neither 0 nor 1, though the dictionary gives the type boolean.",
                         shortestNumber(value)));
    }
    if (column.wanted == Name::kDate && std::fmod(value, kDaySeconds) != 0.0) {
      refuse(column, row,
             "a time stays behind the day, though the dictionary gives the type date.");
    }
  }
}

void EngineBlocks::readTexts(size_t position) {
  Column& column = columns_[position];
  column.texts.resize(cases());
  TypedColumn::texts(chunk_, position, column.texts.data());
  for (size_t row = 0; row < column.texts.size(); ++row) {
    if (column.texts[row].find('\0') != std::string_view::npos) {
      refuse(column, row, "the text holds a NUL character; remove it.");
    }
  }
}

const std::string_view* EngineBlocks::texts(size_t position) {
  readTexts(position);
  Column& column = columns_[position];
  for (size_t row = 0; row < column.texts.size(); ++row) {
    std::string_view& text = column.texts[row];
    text = trimmed(text);
    if (text.size() > kWidestString) {
      refuse(column, row,
             fmt::format("the text takes {} bytes; a string holds up to {}.", text.size(),
                         kWidestString));
    }
    const std::vector<std::string>& missing = rules_.missingTexts;
    if (std::find(missing.begin(), missing.end(), text) != missing.end()) text = {};
  }
  return column.texts.data();
}

const uint32_t* EngineBlocks::codes(size_t position) {
  readTexts(position);
  Column& column = columns_[position];
  column.codes.resize(cases());
  for (size_t row = 0; row < cases(); ++row) {
    column.codes[row] = column.spelled->code(column.spelling, column.texts[row], caseNumber(row));
  }
  return column.codes.data();
}

void EngineBlocks::note(size_t position) {
  Column& column = columns_[position];
  if (!column.spelled) return;
  readTexts(position);
  for (size_t row = 0; row < cases(); ++row) {
    column.spelled->note(column.spelling, column.texts[row], caseNumber(row));
  }
}

void EngineBlocks::forgetTexts() {
  for (Column& column : columns_) {
    if (column.spelled) column.spelled->forget();
  }
}

void EngineBlocks::values(size_t position, std::vector<double>& numbersOut,
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

void EngineBlocks::finish(size_t position, bool complete, CaseColumn& into) const {
  const SpelledColumn& column = *columns_[position].spelled;
  if (complete) {
    column.refuseContradictions();
    column.finish(into);
  }
  into.kind = column.valueKind();
}

std::vector<SpelledColumn> EngineBlocks::takeSpelled() {
  std::vector<SpelledColumn> spelled;
  for (Column& column : columns_) {
    if (column.spelled) spelled.push_back(std::move(*column.spelled));
  }
  return spelled;
}

void EngineBlocks::understandAs(const std::vector<SpelledColumn>& spelled) {
  size_t next = 0;
  for (Column& column : columns_) {
    if (column.spelled) column.spelled = spelled[next++];
  }
}

}  // namespace workbench
