#include "workbench/dataset/spelled_column.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr size_t kWidestString = 32'767;

}  // namespace

DeclaredType declaredType(const ColumnType& type) {
  using Name = ColumnType::Name;
  switch (type.name) {
    case Name::kString:
      return DeclaredType::kString;
    case Name::kNumber:
      return DeclaredType::kNumber;
    case Name::kInteger:
      return DeclaredType::kInteger;
    case Name::kBoolean:
      return DeclaredType::kBoolean;
    case Name::kDate:
      return DeclaredType::kDate;
    case Name::kTime:
      return DeclaredType::kTime;
    case Name::kDateTime:
      return DeclaredType::kDateTime;
    case Name::kDetected:
      break;
  }
  return DeclaredType::kNone;
}

ValueKind valueKindOf(FieldKind kind) {
  switch (kind) {
    case FieldKind::kBoolean:
      return ValueKind::kBoolean;
    case FieldKind::kDate:
      return ValueKind::kDate;
    case FieldKind::kTime:
      return ValueKind::kTime;
    case FieldKind::kDateTime:
    case FieldKind::kZonedDateTime:
      return ValueKind::kDateTime;
    case FieldKind::kText:
      return ValueKind::kString;
    case FieldKind::kMissing:
    case FieldKind::kNumber:
      break;
  }
  return ValueKind::kNumber;
}

SpelledColumn::SpelledColumn(std::string place, std::string name, FieldRules rules, ColumnType type)
    : place_(std::move(place)),
      name_(std::move(name)),
      rules_(std::move(rules)),
      type_(std::move(type)),
      declared_(declaredType(type_)) {}

FieldValue SpelledColumn::understand(Spelling spelling, std::string_view text) const {
  FieldValue value;
  switch (spelling) {
    case Spelling::kField:
      return interpretField(text, rules_, type_.missingTexts);
    case Spelling::kString:
      return interpretString(text, rules_, type_.missingTexts);
    case Spelling::kNumber:
      return interpretNumber(text, '.');
    case Spelling::kBoolean:
      value.kind = FieldKind::kBoolean;
      value.number = text == "true" ? 1.0 : 0.0;
      return value;
    case Spelling::kMissing:
      break;
  }
  return value;
}

uint32_t SpelledColumn::code(Spelling spelling, std::string_view text, uint64_t number) {
  scratch_.assign(1, static_cast<char>(spelling));
  scratch_ += text;
  const uint32_t code = coder_.code(scratch_, spelled_);
  if (code == places_.size()) {
    places_.push_back(number);
    kinds_.add(understand(spelling, text));
  }
  return code;
}

void SpelledColumn::note(Spelling spelling, std::string_view text, uint64_t) {
  kinds_.add(understand(spelling, text));
}

void SpelledColumn::forget() {
  coder_ = TextCoder();
  spelled_ = TextList();
  places_ = {};
}

size_t SpelledColumn::memory() const {
  return coder_.memory() + spelled_.memory() + places_.capacity() * sizeof(uint64_t);
}

ValueKind SpelledColumn::valueKind() const {
  return type_.codes.empty() ? valueKindOf(kind()) : ValueKind::kNumber;
}

void SpelledColumn::refuse(std::string_view text, uint64_t number, std::string_view why) const {
  throw DataError(fmt::format("{} {}: {}: '{}' {}", place_, number, name_, excerpt(text), why));
}

void SpelledColumn::refuseContradiction(const FieldValue& value, std::string_view text,
                                        uint64_t number) const {
  const std::string_view why = contradiction(kind(), declared_, value);
  if (why.empty()) return;
  refuse(text, number,
         declared_ == DeclaredType::kNone
             ? fmt::format("{}.", why)
             : fmt::format("{}; the dictionary gives the type. Correct one of them.", why));
}

void SpelledColumn::refuseContradictions() const {
  if (!type_.codes.empty()) return;  // what is not listed is refused when it gets its number
  for (size_t i = 0; i < spelled_.size(); ++i) {
    const std::string_view text = spelled_[i].substr(1);
    refuseContradiction(understand(static_cast<Spelling>(spelled_[i].front()), text), text,
                        places_[i]);
  }
}

double SpelledColumn::numberOf(const FieldValue& value) const {
  return isMissingIn(kind(), value) ? kSystemMissing : normalNumber(value.number);
}

double SpelledColumn::categoryOf(std::string_view text, uint64_t number) const {
  const std::string_view wanted = withoutTrailingSpaces(text);
  if (wanted.empty()) return kSystemMissing;
  const auto found = std::find_if(type_.codes.begin(), type_.codes.end(),
                                  [&](const auto& entry) { return entry.first == wanted; });
  if (found == type_.codes.end()) {
    refuse(text, number, "is not among the ordered categories that the dictionary lists; add it.");
  }
  return found->second;
}

void SpelledColumn::finish(CaseColumn& column) const {
  column.kind = valueKind();
  column.numbers.clear();
  column.texts = TextList();
  const bool isText = column.kind == ValueKind::kString;
  NumberCoder numberCoder;
  TextCoder textCoder;
  std::vector<uint32_t> codes(spelled_.size());
  for (size_t i = 0; i < spelled_.size(); ++i) {
    const std::string_view text = spelled_[i].substr(1);
    const auto spelling = static_cast<Spelling>(spelled_[i].front());
    const size_t width = withoutTrailingSpaces(text).size();
    if (isText && width > kWidestString) {
      refuse(text, places_[i],
             fmt::format("takes {} bytes; a string holds up to {}.", width, kWidestString));
    }
    codes[i] = isText ? textCoder.code(textOf(spelling, text, places_[i]), column.texts)
                      : numberCoder.code(numberOf(spelling, text, places_[i]), column.numbers);
  }
  column.codes.recode(codes);
}

double SpelledColumn::numberOf(Spelling spelling, std::string_view text, uint64_t number) const {
  const FieldValue value = understand(spelling, text);
  if (!type_.codes.empty()) {
    const bool missing = value.kind == FieldKind::kMissing && !value.provisional;
    return missing ? kSystemMissing : categoryOf(text, number);
  }
  refuseContradiction(value, text, number);
  return numberOf(value);
}

std::string_view SpelledColumn::textOf(Spelling spelling, std::string_view text,
                                       uint64_t number) const {
  const FieldValue value = understand(spelling, text);
  refuseContradiction(value, text, number);
  return isMissingIn(FieldKind::kText, value) ? std::string_view() : withoutTrailingSpaces(text);
}

}  // namespace workbench
