/// What texts are: the one place where a text becomes a value, and where the values of a column
/// decide what the column is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// What a text is by itself, and what a column is. A column is never kMissing.
enum class FieldKind : uint8_t {
  kMissing,
  kNumber,
  kBoolean,
  kDate,
  kTime,
  kDateTime,
  kZonedDateTime,
  kText
};

/// How the texts of a source are read.
struct FieldRules {
  char decimal = '.';  ///< or ','
  /// Texts that are missing values. They are so in every column when `missingGiven`, else in the
  /// columns that are of one kind other than text without them.
  std::vector<std::string> missingTexts = {"NA"};
  bool missingGiven = false;
};

/// Why a number cannot simply be used.
enum class NumberFlaw : uint8_t {
  kNone,
  kInexact,  ///< a whole number spelt in digits alone, or a moment, that no double holds exactly
  kOverflow  ///< any other number beyond the range of a double
};

/// A text, understood.
struct FieldValue {
  FieldKind kind = FieldKind::kMissing;
  NumberFlaw flaw = NumberFlaw::kNone;
  /// A text that is missing where its column, which it does not help to choose, is of another kind
  /// than the text itself; a text of its own in a column of texts.
  bool provisional = false;
  /// Of all kinds but texts: false 0, true 1; dates and date-times in seconds since 1970-01-01
  /// 00:00:00 (UTC with a zone), times in seconds since midnight. NaN when missing.
  double number = 0.0;
};

/// Understands the text of a field: without its quotes, and, where it had none, without the blanks
/// around it. `columnMissing` are a dictionary's texts for missing values of this column.
FieldValue interpretField(std::string_view text, const FieldRules& rules,
                          const std::vector<std::string>& columnMissing = {});

/// The same for the strings of formats that have numbers and booleans of their own: they are
/// neither.
FieldValue interpretString(std::string_view text, const FieldRules& rules,
                           const std::vector<std::string>& columnMissing = {});

/// A number alone, as such formats spell it: kNumber, or kText for a text that is none.
FieldValue interpretNumber(std::string_view text, char decimal);

/// The text without its trailing spaces, which never count.
std::string_view withoutTrailingSpaces(std::string_view text);

/// A type that a dictionary gives to a column.
enum class DeclaredType : uint8_t {
  kNone,
  kString,
  kInteger,
  kNumber,
  kBoolean,
  kDate,
  kTime,
  kDateTime
};

/// The kinds of all values of a column, in any order.
class KindSet {
 public:
  void add(const FieldValue& value) {
    if (value.provisional) return;
    kinds_ = static_cast<uint8_t>(kinds_ | 1U << static_cast<unsigned>(value.kind));
    if (value.flaw == NumberFlaw::kInexact) inexact_ = true;
  }
  void add(const KindSet& other) {
    kinds_ = static_cast<uint8_t>(kinds_ | other.kinds_);
    inexact_ = inexact_ || other.inexact_;
  }
  bool has(FieldKind kind) const { return (kinds_ >> static_cast<unsigned>(kind) & 1U) != 0; }

  /// The kind that all values have but those that are missing: text when there are several, or
  /// whole numbers that doubles would merge; number when there is no value.
  FieldKind columnKind() const;
  /// The kind of a column of a declared type: columnKind() without one. Values that contradict the
  /// type are found by `contradiction`.
  FieldKind columnKind(DeclaredType type) const;

 private:
  uint8_t kinds_ = 0;
  bool inexact_ = false;
};

/// Whether a value is missing in a column of that kind: system-missing in a numeric column, a blank
/// text in a column of texts.
bool isMissingIn(FieldKind column, const FieldValue& value);

/// Why a value cannot stand in a column of that kind and type, as the end of a sentence that begins
/// with the value ("is not a whole number"); empty when it can. Also says so of numbers that are
/// too large for a column of numbers.
std::string_view contradiction(FieldKind column, DeclaredType type, const FieldValue& value);

/// The name of a kind in messages ("number", "date and time with zone").
std::string_view nameOf(FieldKind kind);

}  // namespace workbench
