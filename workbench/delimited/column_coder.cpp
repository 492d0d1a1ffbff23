#include "workbench/delimited/column_coder.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include "workbench/delimited/field_text.h"

namespace workbench {
namespace {

/// Bytes of fields that wait to be understood when there are no codes.
constexpr size_t kMostKindBytes = size_t{4} << 20U;

/// Begins the code of a text that does not come from a record, where it cannot occur.
constexpr char kConstantMark = '\0';

/// The fields of one column of a block.
class FieldCursor {
 public:
  FieldCursor(const TextBlock& block, size_t field)
      : text_(block.text().data()),
        index_(block.index()),
        positions_(index_.positions() + field),
        last_(field + 1 == index_.columns()) {}

  /// Calls `visit(record, begin, length)` for each record from `first` to before `last`.
  template <class Visit>
  void forEach(size_t first, size_t last, Visit visit) const {
    if (const uint32_t* bases = index_.bases()) {
      for (size_t record = first; record < last; ++record) show(record, bases[record], visit);
    } else {
      const size_t columns = index_.columns();
      for (size_t record = first; record < last; ++record) show(record, record * columns, visit);
    }
  }

 private:
  template <class Visit>
  void show(size_t record, size_t base, Visit& visit) const {
    const uint32_t begin = positions_[base] + 1;
    uint32_t end = positions_[base + 1];
    if (last_ && end > begin && text_[end] == '\n' && text_[end - 1] == '\r') --end;
    visit(record, text_ + begin, size_t{end} - begin);
  }

  const char* text_;
  const RecordIndex& index_;
  const uint32_t* positions_;
  bool last_;
};

}  // namespace

bool Contradiction::operator<(const Contradiction& other) const {
  return std::tie(place.part, place.line, column) <
         std::tie(other.place.part, other.place.line, other.column);
}

std::string_view codedText(std::string_view field, std::string& buffer) {
  if (!field.empty() && field.front() == kConstantMark) return field.substr(1);
  return fieldText(field, buffer);
}

uint32_t ColumnCoder::codeOfConstant(const std::string& text, uint32_t part) {
  std::string field = kConstantMark + text;
  const size_t length = field.size();
  field.append(sizeof(uint64_t), '\0');
  return fields_.codeOf(field.data(), length, [&] { return DelimitedPlace{part, 0}; });
}

void ColumnCoder::readCodes(const TextBlock& block, size_t first, size_t last, uint32_t* codes) {
  const ColumnPlan::Origin& origin = plan_->origins[block.part];
  if (origin.constant) {
    std::fill(codes + first, codes + last, codeOfConstant(*origin.constant, block.part));
    return;
  }
  FieldCursor(block, origin.field)
      .forEach(first, last, [&](size_t record, const char* begin, size_t length) {
        codes[record] = fields_.codeOf(begin, length, [&] {
          return DelimitedPlace{block.part, block.lineOf(record)};
        });
      });
}

void ColumnCoder::readNumbers(const TextBlock& block, double* numbers) {
  std::string buffer;
  const auto numberOf = [&](std::string_view text, uint64_t line) {
    const FieldValue value = interpretField(text, *plan_->rules, plan_->missingTexts);
    otherKinds_.add(value);
    check(wideKind_, value, {block.part, line}, text);
    return isMissingIn(wideKind_, value) ? std::numeric_limits<double>::quiet_NaN() : value.number;
  };
  const ColumnPlan::Origin& origin = plan_->origins[block.part];
  if (origin.constant) {
    std::fill_n(numbers, block.index().records(), numberOf(*origin.constant, 0));
    return;
  }
  FieldCursor(block, origin.field)
      .forEach(0, block.index().records(), [&](size_t record, const char* begin, size_t length) {
        numbers[record] = numberOf(fieldText({begin, length}, buffer), block.lineOf(record));
      });
}

void ColumnCoder::readKinds(const TextBlock& block) {
  if (wide_) {
    std::vector<double> numbers(block.index().records());
    readNumbers(block, numbers.data());
    return;
  }
  std::vector<uint32_t> codes(block.index().records());
  readCodes(block, 0, codes.size(), codes.data());
  if (memory() > kMostKindBytes) forgetFields();
}

void ColumnCoder::forgetFields() {
  const std::vector<FieldValue> values = interpretFields();
  for (const FieldValue& value : values) otherKinds_.add(value);
  const FieldKind kind = otherKinds_.columnKind(plan_->type);
  for (uint32_t code = 0; code < values.size(); ++code) {
    check(kind, values[code], fields_.place(code), textOf(code));
  }
  fields_.clear();
}

void ColumnCoder::chooseForm() {
  if (wide_ || codesForGood_ || fields_.size() <= kMostCodedFields) return;
  codesForGood_ = plan_->onlyCodes;
  if (!codesForGood_) {
    KindSet kinds;
    for (const FieldValue& value : interpretFields()) kinds.add(value);
    wideKind_ = kinds.columnKind(plan_->type);
    codesForGood_ = wideKind_ == FieldKind::kText;
  }
  wide_ = !codesForGood_;
}

std::vector<FieldValue> ColumnCoder::interpretFields() const {
  std::vector<FieldValue> values;
  values.reserve(fields_.size());
  std::string buffer;
  for (size_t code = 0; code < fields_.size(); ++code) {
    values.push_back(
        interpretField(codedText(fields_[code], buffer), *plan_->rules, plan_->missingTexts));
  }
  return values;
}

std::string ColumnCoder::textOf(uint32_t code) const {
  std::string buffer;
  return std::string(codedText(fields_[code], buffer));
}

void ColumnCoder::check(FieldKind kind, const FieldValue& value, const DelimitedPlace& place,
                        std::string_view text) {
  const std::string_view reason = workbench::contradiction(kind, plan_->type, value);
  if (reason.empty()) return;
  Contradiction found{place, column_, std::string(text), std::string(reason)};
  if (!contradiction_ || found < *contradiction_) contradiction_ = std::move(found);
}

}  // namespace workbench
