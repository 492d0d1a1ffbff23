/// Blocks of typed values as values of cases.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/spelled_column.h"

namespace workbench {

/// A column of a source whose values have types of their own.
struct TypedColumnFacts {
  std::string name;
  ValueKind kind = ValueKind::kNumber;
  bool isText = false;                       ///< texts, whatever they spell
  bool fromPath = false;                     ///< texts that stand in the paths of the files
  std::vector<std::string> categories = {};  ///< of an enumeration, in declared order
  bool extendedMissing = false;              ///< may hold .a to .z
};

/// What is wrong with a value, as the end of a sentence that begins with the value.
struct ValueFlaw {
  size_t row = 0;
  std::string value;
  std::string reason;
};

/// Delivers the columns of a request block by block. Throws DataError and Interrupted.
class TypedRows {
 public:
  static constexpr uint8_t kMissingByte = 128;

  virtual ~TypedRows() = default;
  /// False after the last block.
  virtual bool next() = 0;
  virtual size_t cases() const = 0;
  /// The block's values of a column of the request, NaN when missing: dates and date-times in
  /// seconds since 1970-01-01, times in seconds since midnight, booleans 0 and 1, enumerations by
  /// their place from 1 on. False at the first that is none of these; `flaw` says which.
  virtual bool numbers(size_t column, double* out, ValueFlaw& flaw) = 0;
  /// The same values as bytes where all are whole numbers from 0 to below kMissingByte, which
  /// stands for missing ones; false where they are not, or cannot be had so.
  virtual bool bytes(size_t column, uint8_t* out) {
    (void)column, (void)out;
    return false;
  }
  /// Of a column of texts, or one that is made text: valid until the next block.
  virtual void texts(size_t column, std::string_view* out) = 0;
};

/// Whether a column that is not text is to be read as text.
bool isMadeText(const TypedColumnFacts& column, const ColumnType& type);

/// Reads the columns of a request. There are three kinds of them: numbers, texts that stay what
/// they are, and texts that are spelled, whose values decide what they are.
class TypedBlocks {
 public:
  /// `label` names the source in messages and outlives the blocks.
  TypedBlocks(const std::string& label, const std::vector<TypedColumnFacts>& columns,
              const CaseRequest& request, const FieldRules& rules, std::unique_ptr<TypedRows> rows);

  /// False after the last block. Throws DataError or Interrupted.
  bool next();
  size_t cases() const { return cases_; }

  /// By column; spelled ones count as texts until they are finished.
  std::vector<ValueKind> kinds() const;
  bool isSpelled(size_t column) const { return columns_[column].spelled.has_value(); }
  bool isText(size_t column) const { return columns_[column].isText; }
  bool anySpelled() const;

  /// Of the block at hand, as CaseColumn has them. Throw DataError for values that cannot be held.
  const double* numbers(size_t column);
  /// Where these are whole numbers from 0 to below TypedRows::kMissingByte, that byte for missing
  /// ones; else null, and `numbers` has to be asked.
  const uint8_t* bytes(size_t column);
  const std::string_view* texts(size_t column);
  const uint32_t* codes(size_t column);
  /// Any column as the values of a CaseBlock; spelled ones must be understood.
  void values(size_t column, std::vector<double>& numbers, std::vector<std::string_view>& texts);
  /// Takes the block's values of a spelled column into account without keeping them.
  void note(size_t column);
  void forgetTexts();

  SpelledColumn& spelled(size_t column) { return *columns_[column].spelled; }
  /// Gives a spelled column its kind and, with all its cases, its values.
  void finish(size_t column, bool complete, CaseColumn& into) const;
  /// The spelled columns in order, to be handed to another reading of the same request.
  std::vector<SpelledColumn> takeSpelled();
  void understandAs(const std::vector<SpelledColumn>& spelled);

 private:
  struct Column {
    std::string name;
    bool isText = false;
    ValueKind native = ValueKind::kNumber;
    bool extendedMissing = false;
    ColumnType wanted;
    std::vector<double> categories;  // of enumerations: the number of each category
    std::optional<SpelledColumn> spelled;
    Spelling spelling = Spelling::kField;
    std::vector<double> numbers;
    std::vector<uint8_t> bytes;
    std::vector<std::string_view> texts;
    std::vector<uint32_t> codes;
  };
  Column columnOf(const TypedColumnFacts& column, const ColumnType& type) const;
  uint64_t caseNumber(size_t row) const { return static_cast<uint64_t>(casesBefore_) + row + 1; }
  void readTexts(size_t column);
  void refuseWrongType(Column& column) const;
  [[noreturn]] void refuse(const Column& column, size_t row, const std::string& what) const;

  const std::string& label_;
  FieldRules rules_;
  std::vector<Column> columns_;
  std::unique_ptr<TypedRows> rows_;
  size_t cases_ = 0;
  int64_t casesBefore_ = 0;
};

}  // namespace workbench
