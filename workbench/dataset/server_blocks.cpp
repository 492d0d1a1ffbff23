#include "workbench/dataset/server_blocks.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/dataset/typed_rules.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

using Name = ColumnType::Name;

bool isNumeric(ServerKind kind) {
  return kind != ServerKind::kText && kind != ServerKind::kMixed && kind != ServerKind::kUnusable;
}

/// Whether a column that holds no texts is to be text.
bool isMadeText(const ServerColumn& column, const ColumnType& type) {
  return column.kind != ServerKind::kText && type.name == Name::kString &&
         (type.codes.empty() || column.categories.empty());
}

/// Texts whose values decide what they are.
bool isSpelledColumn(const ServerColumn& column, const ColumnType& type, bool isMarked) {
  if (type.name == Name::kString && type.codes.empty()) return false;
  if (column.kind == ServerKind::kMixed || (isMarked && isNumeric(column.kind))) return true;
  return column.kind == ServerKind::kText && (type.name != Name::kDetected || !type.codes.empty());
}

/// A server's whole number of any size, which a double may not hold.
bool isWholeNumber(std::string_view text) {
  return text.find_first_not_of("-0123456789") == std::string_view::npos;
}

}  // namespace

ValueKind valueKindOf(ServerKind kind) {
  switch (kind) {
    case ServerKind::kBoolean:
      return ValueKind::kBoolean;
    case ServerKind::kDate:
      return ValueKind::kDate;
    case ServerKind::kTime:
      return ValueKind::kTime;
    case ServerKind::kDateTime:
    case ServerKind::kZonedDateTime:
      return ValueKind::kDateTime;
    case ServerKind::kText:
      return ValueKind::kString;
    default:
      return ValueKind::kNumber;
  }
}

SelectedColumn selectedColumn(const ServerColumn& column, const ColumnType& type) {
  return {&column, column.kind == ServerKind::kText || isMadeText(column, type)};
}

ServerBlocks::ServerBlocks(ServerRelation& relation, const CaseRequest& request,
                           const FieldRules& rules, const std::string& what)
    : place_(relation.label() + ", " + what), isMarked_(relation.dialect().marked), rules_(rules) {
  for (const ColumnRequest& wanted : request.columns) {
    const ServerColumn& server = relation.columns()[wanted.column];
    Column& column = columns_.emplace_back();
    column.server = server;
    column.type = wanted.type;
    column.isText = server.kind == ServerKind::kText || isMadeText(server, wanted.type);
    column.native = valueKindOf(server.kind);
    column.categories = categoryNumbers(server.categories, wanted.type);
    const bool codedText = column.isText && !wanted.type.codes.empty();
    if (isSpelledColumn(server, wanted.type, isMarked_) || codedText) {
      column.spelled.emplace(place_, server.name, rules_, wanted.type);
    }
  }
}

std::vector<bool> ServerBlocks::inMemory() const {
  std::vector<bool> which;
  for (const Column& column : columns_) which.push_back(column.server.inMemory && !column.isText);
  return which;
}

std::vector<ValueKind> ServerBlocks::kinds() const {
  std::vector<ValueKind> kinds;
  for (const Column& column : columns_) {
    kinds.push_back(column.isText || column.spelled ? ValueKind::kString
                                                    : wantedKind(column.type.name, column.native));
  }
  return kinds;
}

bool ServerBlocks::anyOpen() const {
  return std::any_of(columns_.begin(), columns_.end(), [](const Column& column) {
    return column.spelled.has_value() || column.server.kind == ServerKind::kZeroOne;
  });
}

void ServerBlocks::refuse(const Column& column, const std::string& what) const {
  throw DataError(fmt::format("{} {}: {}: {}", place_, taken_ + 1, column.server.name, what));
}

void ServerBlocks::beginBlock() {
  rows_ = 0;
  for (Column& column : columns_) {
    column.numbers.clear();
    column.bytes.clear();
    column.ends.clear();
    column.codes.clear();
  }
}

/// Valid until the column's next one.
std::string_view ServerBlocks::madeText(Column& column, std::string_view number, bool binary) {
  column.made = numberAsText(number, binary);
  return column.made;
}

ServerBlocks::Told ServerBlocks::marked(Column& column, std::string_view text) const {
  const auto mark = static_cast<ValueMark>(text.empty() ? '\0' : text.front());
  text.remove_prefix(std::min<size_t>(text.size(), 1));
  switch (mark) {
    case ValueMark::kNumber:
      if (column.isText) return {Spelling::kField, madeText(column, text, true)};
      if (isWholeNumber(text)) {
        const ServerNumber number = serverNumber(column.server, text);
        if (!number.flaw.empty()) refuse(column, fmt::format("{} {}.", excerpt(text), number.flaw));
      }
      return {Spelling::kNumber, text};
    case ValueMark::kBytes:
      refuse(column, "there are bytes; take the part that is wanted with --query.");
    case ValueMark::kNul:
      refuse(column, "the text holds a NUL character; remove it.");
    default:
      break;
  }
  if (column.type.name != Name::kDetected || !column.type.codes.empty()) {
    return {Spelling::kField, text};
  }
  return {column.server.moments ? Spelling::kString : Spelling::kText, text};
}

ServerBlocks::Told ServerBlocks::told(const ServerStatement& statement, size_t position) {
  Column& column = columns_[position];
  if (statement.isNull(position)) return {};
  const std::string_view text = statement.text(position);
  if (statement.isCut(position)) {
    refuse(column, fmt::format("the text takes more than {} characters; a string holds up to {} "
                               "bytes.",
                               ServerStatement::kWidestText, ServerStatement::kWidestText));
  }
  if (isMarked_) return marked(column, text);
  if (text.find('\0') != std::string_view::npos) {
    refuse(column, "the text holds a NUL character; remove it.");
  }
  const bool isNumber = column.isText && column.server.kind == ServerKind::kNumber;
  return {Spelling::kField, isNumber ? madeText(column, text, column.server.floating) : text};
}

void ServerBlocks::notice(Column& column, double value) {
  if (value == kSystemMissing) return;
  column.anyValue = true;
  column.onlyZeroOne = column.onlyZeroOne && (value == 0.0 || value == 1.0);
}

void ServerBlocks::takeNumber(const ServerStatement& statement, size_t position) {
  Column& column = columns_[position];
  if (statement.isNull(position)) return column.numbers.push_back(kSystemMissing);
  ServerNumber read;
  if (column.server.inMemory) {
    read.value = statement.number(position);
  } else {
    read = serverNumber(column.server, statement.text(position));
    if (!read.flaw.empty()) {
      refuse(column, fmt::format("{} {}.", excerpt(statement.text(position)), read.flaw));
    }
  }
  double value = normalNumber(read.value);
  if (!column.categories.empty()) value = column.categories[static_cast<size_t>(value) - 1];
  const std::string wrong = wrongType(column.type, value);
  if (!wrong.empty()) refuse(column, wrong);
  notice(column, value);
  column.numbers.push_back(value);
}

void ServerBlocks::takeText(Column& column, std::string_view text) {
  column.bytes += text;
  column.ends.push_back(column.bytes.size());
}

void ServerBlocks::takeSpelled(Column& column, const Told& value, Use use) {
  SpelledColumn& spelled = *column.spelled;
  const uint64_t number = taken_ + 1;
  if (value.spelling == Spelling::kNumber) {
    column.anyValue = true;
    column.onlyZeroOne = column.onlyZeroOne && (value.text == "0" || value.text == "1");
  } else if (value.spelling != Spelling::kMissing) {
    column.onlyZeroOne = false;
  }
  switch (use) {
    case Use::kCodes:
      return column.codes.push_back(spelled.code(value.spelling, value.text, number));
    case Use::kNote:
      return spelled.note(value.spelling, value.text);
    case Use::kValues:
      break;
  }
  if (spelled.valueKind() == ValueKind::kString) {
    takeText(column, spelled.textOf(value.spelling, value.text, number));
  } else {
    column.numbers.push_back(spelled.numberOf(value.spelling, value.text, number));
  }
}

void ServerBlocks::take(const ServerStatement& statement, Use use) {
  for (size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    if (column.spelled) {
      takeSpelled(column, told(statement, i), use);
    } else if (column.isText) {
      const KeptText kept = keptText(told(statement, i).text, rules_);
      if (!kept.flaw.empty()) refuse(column, kept.flaw);
      takeText(column, kept.text);
    } else {
      takeNumber(statement, i);
    }
  }
  ++rows_;
  ++taken_;
}

void ServerBlocks::endBlock() {
  for (Column& column : columns_) {
    column.texts.clear();
    size_t begin = 0;
    for (const size_t end : column.ends) {
      column.texts.push_back(std::string_view(column.bytes).substr(begin, end - begin));
      begin = end;
    }
  }
}

bool ServerBlocks::isBoolean(const Column& column) const {
  return column.server.kind == ServerKind::kZeroOne && column.type.name == Name::kDetected &&
         column.anyValue && column.onlyZeroOne;
}

void ServerBlocks::finish(size_t position, bool complete, CaseColumn& into) const {
  const Column& column = columns_[position];
  if (column.spelled) {
    if (complete) {
      column.spelled->refuseContradictions();
      column.spelled->finish(into);
    }
    into.kind = column.spelled->valueKind();
  }
  if (isBoolean(column)) into.kind = ValueKind::kBoolean;
}

std::vector<SpelledColumn> ServerBlocks::takeSpelled() {
  std::vector<SpelledColumn> spelled;
  for (Column& column : columns_) {
    if (column.spelled) spelled.push_back(std::move(*column.spelled));
  }
  return spelled;
}

void ServerBlocks::understandAs(const std::vector<SpelledColumn>& spelled) {
  size_t next = 0;
  for (Column& column : columns_) {
    if (column.spelled) column.spelled = spelled[next++];
  }
}

void ServerBlocks::forgetTexts() {
  for (Column& column : columns_) {
    if (column.spelled) column.spelled->forget();
  }
}

}  // namespace workbench
