/// One thread's reading of one column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/delimited/block_reader.h"
#include "workbench/delimited/delimited_data.h"
#include "workbench/delimited/spelling_table.h"

namespace workbench {

/// How a column that is wanted is to be read.
struct ColumnPlan {
  std::string name;
  DeclaredType type = DeclaredType::kNone;
  std::vector<std::string> missingTexts;
  const FieldRules* rules = nullptr;
  /// Fields get codes however many different ones there are: it is known not to be a column of
  /// numbers.
  bool onlyCodes = false;
  /// By part: the position of the field, or the text that the part's path gives.
  struct Origin {
    size_t field = 0;
    std::optional<std::string> constant;
  };
  std::vector<Origin> origins;
};

/// A value that its column cannot have.
struct Contradiction {
  DelimitedPlace place;
  size_t column = 0;  ///< of the request
  std::string text;
  std::string reason;
  bool operator<(const Contradiction& other) const;
};

/// More different fields than that are not worth codes in a column of numbers.
inline constexpr size_t kMostCodedFields = size_t{1} << 16U;

class ColumnCoder {
 public:
  /// The plan outlives the coder.
  ColumnCoder(const ColumnPlan& plan, size_t column) : plan_(&plan), column_(column) {}

  /// Whether the next block gives numbers instead of codes.
  bool isWide() const { return wide_; }
  /// Of the records from `first` to before `last`, whose codes go to those places.
  void readCodes(const TextBlock& block, size_t first, size_t last, uint32_t* codes);
  /// One for each record of the block.
  void readNumbers(const TextBlock& block, double* numbers);
  /// To be called between blocks: goes over to numbers when there are too many codes.
  void chooseForm();
  /// The kinds of a block's fields and nothing else, in bounded memory; the codes of all blocks
  /// before are lost.
  void readKinds(const TextBlock& block);

  const SpellingTable& fields() const { return fields_; }
  /// The fields with codes, understood.
  std::vector<FieldValue> interpretFields() const;
  std::string textOf(uint32_t code) const;
  /// The kinds of the values that have no code.
  const KindSet& otherKinds() const { return otherKinds_; }
  const std::optional<Contradiction>& contradiction() const { return contradiction_; }
  /// Of the fields, and of what is made of them when all cases are read.
  size_t memory() const { return fields_.memory() + fields_.size() * kAssemblyBytes; }

  /// Keeps the first of all contradictions; `kind` is that of the column.
  void check(FieldKind kind, const FieldValue& value, const DelimitedPlace& place,
             std::string_view text);

 private:
  /// A value, its order among the others, its code and, at last, its text.
  static constexpr size_t kAssemblyBytes = 120;

  void forgetFields();
  uint32_t codeOfConstant(const std::string& text, uint32_t part);

  const ColumnPlan* plan_;
  size_t column_;
  SpellingTable fields_;
  bool wide_ = false;
  bool codesForGood_ = false;
  FieldKind wideKind_ = FieldKind::kNumber;
  KindSet otherKinds_;
  std::optional<Contradiction> contradiction_;
};

/// The text of a coded field: without quotes and blanks; a text from a path as it is.
std::string_view codedText(std::string_view field, std::string& buffer);

}  // namespace workbench
