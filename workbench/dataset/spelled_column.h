/// A column of texts whose kind all its values decide; each different text is understood once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/odd_text.h"
#include "workbench/dataset/value_coder.h"
#include "workbench/values/field.h"

namespace workbench {

/// What a value was in its source, and so how it is understood.
enum class Spelling : char {
  kField = 'f',    ///< a text of an untyped source
  kString = 's',   ///< a text of a source that has numbers and booleans of its own
  kNumber = 'n',   ///< a number there
  kBoolean = 'b',  ///< "true" or "false" there
  kText = 't',     ///< a text there that stays one, whatever it spells
  kMissing = 'm'   ///< nothing
};

/// The kind of the variable that a column of texts becomes, and the type that a dictionary gives.
ValueKind valueKindOf(FieldKind kind);
DeclaredType declaredType(const ColumnType& type);

class SpelledColumn {
 public:
  /// `place` begins messages and is followed by a number ("data.json, line").
  SpelledColumn(std::string place, std::string name, FieldRules rules, ColumnType type);
  /// What comes from now on stands there.
  void beginPart(std::string place);

  /// The code of a text; `number` tells where it stands.
  uint32_t code(Spelling spelling, std::string_view text, uint64_t number);
  /// Takes a value into account without keeping it.
  void note(Spelling spelling, std::string_view text);
  /// Gives up all codes.
  void forget();
  size_t memory() const;

  /// What the column is by the values so far.
  FieldKind kind() const { return kinds_.columnKind(declared_); }
  ValueKind valueKind() const;
  /// Throws DataError at the first value, in the order in which they came, that the column cannot
  /// have. To be called when all values are known and have codes.
  void refuseContradictions() const;
  /// What made it a column of texts, among cases with these codes.
  std::optional<OddText> odd(const CodedCases& cases, const CodeList& codes) const;
  /// What a value is by itself.
  FieldKind kindOf(Spelling spelling, std::string_view text) const {
    return understand(spelling, text).kind;
  }
  /// Gives a column with these codes its values.
  void finish(CaseColumn& column) const;

  /// A single value of a column whose values are all known: `text` stays what it is, or becomes
  /// empty; the number is kSystemMissing when it is missing. Throws as refuseContradictions.
  double numberOf(Spelling spelling, std::string_view text, uint64_t number) const {
    return numberOf(places_.size(), spelling, text, number);
  }
  std::string_view textOf(Spelling spelling, std::string_view text, uint64_t number) const {
    return textOf(places_.size(), spelling, text, number);
  }

 private:
  FieldValue understand(Spelling spelling, std::string_view text) const;
  /// Of the texts that have codes, or of one that comes now.
  double numberOf(size_t code, Spelling spelling, std::string_view text, uint64_t number) const;
  std::string_view textOf(size_t code, Spelling spelling, std::string_view text,
                          uint64_t number) const;
  void refuseContradiction(size_t code, const FieldValue& value, std::string_view text,
                           uint64_t number) const;
  double categoryOf(size_t code, std::string_view text, uint64_t number) const;
  /// Where the text with a code came first; with the code after all others, the part at hand.
  const std::string& partOf(size_t code) const;
  [[noreturn]] void refuse(size_t code, std::string_view text, uint64_t number,
                           std::string_view why) const;

  struct Part {
    size_t firstCode;
    std::string place;
  };
  std::vector<Part> parts_;  // the last one is at hand
  std::string name_;
  FieldRules rules_;
  ColumnType type_;
  DeclaredType declared_;
  KindSet kinds_;
  TextCoder coder_;
  TextList spelled_;  // each text, its Spelling in front
  std::vector<uint64_t> places_;
  std::string scratch_;
};

}  // namespace workbench
