#include "workbench/dataset/spelled_column.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "workbench/dataset/typed_rules.h"
#include "workbench/values/data_error.h"
#include "workbench/values/excerpt.h"

namespace workbench {

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
    : parts_({{0, std::move(place)}}),
      name_(std::move(name)),
      rules_(std::move(rules)),
      type_(std::move(type)),
      declared_(declaredType(type_)) {}

void SpelledColumn::beginPart(std::string place) {
  parts_.push_back({places_.size(), std::move(place)});
}

const std::string& SpelledColumn::partOf(size_t code) const {
  const auto next =
      std::upper_bound(parts_.begin(), parts_.end(), code,
                       [](size_t wanted, const Part& part) { return wanted < part.firstCode; });
  return std::prev(next)->place;
}

FieldValue SpelledColumn::understand(Spelling spelling, std::string_view text) const {
  FieldValue value;
  switch (spelling) {
    case Spelling::kField:
      return interpretField(text, rules_, type_.missingTexts);
    case Spelling::kString:
      return interpretString(text, rules_, type_.missingTexts);
    case Spelling::kNumber:
      value = interpretNumber(text, '.');
      value.provisional = isListedMissing(type_, value.number);
      return value;
    case Spelling::kBoolean:
      value.kind = FieldKind::kBoolean;
      value.number = text == "true" ? 1.0 : 0.0;
      return value;
    case Spelling::kText:
      value = interpretString(text, rules_, type_.missingTexts);
      if (value.kind != FieldKind::kMissing) value.kind = FieldKind::kText;
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

void SpelledColumn::note(Spelling spelling, std::string_view text) {
  kinds_.add(understand(spelling, text));
}

void SpelledColumn::forget() {
  coder_ = TextCoder();
  spelled_ = TextList();
  places_ = {};
  parts_ = {{0, std::move(parts_.back().place)}};
}

size_t SpelledColumn::memory() const {
  return coder_.memory() + spelled_.memory() + places_.capacity() * sizeof(uint64_t);
}

ValueKind SpelledColumn::valueKind() const {
  return type_.codes.empty() ? valueKindOf(kind()) : ValueKind::kNumber;
}

void SpelledColumn::refuse(size_t code, std::string_view text, uint64_t number,
                           std::string_view why) const {
  throw DataError(
      fmt::format("{} {}: {}: '{}' {}", partOf(code), number, name_, excerpt(text), why));
}

void SpelledColumn::refuseContradiction(size_t code, const FieldValue& value, std::string_view text,
                                        uint64_t number) const {
  const std::string_view why = contradiction(kind(), declared_, value);
  if (why.empty()) return;
  refuse(code, text, number,
         declared_ == DeclaredType::kNone
             ? fmt::format("{}.", why)
             : fmt::format("{}; the dictionary gives the type. Correct one of them.", why));
}

void SpelledColumn::refuseContradictions() const {
  if (!type_.codes.empty()) return;  // what is not listed is refused when it gets its number
  for (size_t i = 0; i < spelled_.size(); ++i) {
    const std::string_view text = spelled_[i].substr(1);
    refuseContradiction(i, understand(static_cast<Spelling>(spelled_[i].front()), text), text,
                        places_[i]);
  }
}

double SpelledColumn::categoryOf(size_t code, std::string_view text, uint64_t number) const {
  const std::string_view wanted = withoutTrailingSpaces(text);
  if (wanted.empty()) return kSystemMissing;
  const auto found = std::find_if(type_.codes.begin(), type_.codes.end(),
                                  [&](const auto& entry) { return entry.first == wanted; });
  if (found == type_.codes.end()) {
    refuse(code, text, number,
           "is not among the ordered categories that the dictionary lists; add it.");
  }
  return found->second;
}

std::optional<OddText> SpelledColumn::odd(const CodedCases& cases, const CodeList& codes) const {
  if (!type_.codes.empty() || kind() != FieldKind::kText) return {};
  std::vector<int64_t> counts(spelled_.size(), 0);
  for (size_t row = 0; row < cases.rows; ++row) {
    counts[codes[row]] += row < cases.counts.size() ? static_cast<int64_t>(cases.counts[row]) : 1;
  }
  KindTally tally;
  for (size_t i = 0; i < spelled_.size(); ++i) {
    const std::string_view text = spelled_[i].substr(1);
    // Codes are given in the order of the data.
    tally.add(kindOf(static_cast<Spelling>(spelled_[i].front()), text), counts[i], {0, i}, text);
  }
  const auto found = tally.odd();
  if (!found) return {};
  const auto code = static_cast<size_t>(found->position.second);
  return OddText{found->text, fmt::format("{} {}", partOf(code), places_[code]), found->usual};
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
      refuse(i, text, places_[i],
             fmt::format("takes {} bytes; a string holds up to {}.", width, kWidestString));
    }
    codes[i] = isText ? textCoder.code(textOf(i, spelling, text, places_[i]), column.texts)
                      : numberCoder.code(numberOf(i, spelling, text, places_[i]), column.numbers);
  }
  column.codes.recode(codes);
}

double SpelledColumn::numberOf(size_t code, Spelling spelling, std::string_view text,
                               uint64_t number) const {
  const FieldValue value = understand(spelling, text);
  if (!type_.codes.empty()) {
    const bool missing = value.kind == FieldKind::kMissing && !value.provisional;
    return missing ? kSystemMissing : categoryOf(code, text, number);
  }
  refuseContradiction(code, value, text, number);
  return isMissingIn(kind(), value) ? kSystemMissing : normalNumber(value.number);
}

std::string_view SpelledColumn::textOf(size_t code, Spelling spelling, std::string_view text,
                                       uint64_t number) const {
  const FieldValue value = understand(spelling, text);
  refuseContradiction(code, value, text, number);
  if (isMissingIn(FieldKind::kText, value)) return {};
  return withoutTrailingSpaces(text);
}

}  // namespace workbench
