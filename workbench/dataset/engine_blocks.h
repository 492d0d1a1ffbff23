/// The chunks of a query as values of cases.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/spelled_column.h"
#include "workbench/engine/relation.h"
#include "workbench/engine/typed_values.h"

namespace workbench {

/// The kind of a variable whose values the engine holds.
ValueKind valueKindOf(EngineKind kind);

/// Reads the columns of a request. There are three kinds of them: numbers, texts that stay what
/// they are, and texts that are spelled, whose values decide what they are.
class EngineBlocks {
 public:
  EngineBlocks(Relation& relation, const CaseRequest& request, const FieldRules& rules);

  /// False after the last block. Throws DataError, EngineError or Interrupted.
  bool next();
  size_t cases() const { return chunk_.size(); }

  /// By column; spelled ones count as texts until they are finished.
  std::vector<ValueKind> kinds() const;
  bool isSpelled(size_t column) const { return columns_[column].spelled.has_value(); }
  bool isText(size_t column) const { return columns_[column].isText; }
  bool anySpelled() const;

  /// Of the block at hand, as CaseColumn has them. Throw DataError for values that cannot be held.
  const double* numbers(size_t column);
  /// Where these are whole numbers from 0 to below TypedColumn::kMissingByte, that byte for missing
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
    TypedColumn type;
    ColumnType::Name wanted = ColumnType::Name::kDetected;
    std::vector<double> categories;  // of enumerations: the number of each category
    std::optional<SpelledColumn> spelled;
    Spelling spelling = Spelling::kField;
    std::vector<double> numbers;
    std::vector<uint8_t> bytes;
    std::vector<std::string_view> texts;
    std::vector<uint32_t> codes;
  };
  Column columnOf(const RelationColumn& column, const ColumnType& type) const;
  static std::string sqlOf(const Relation& relation, const CaseRequest& request);
  uint64_t caseNumber(size_t row) const { return static_cast<uint64_t>(casesBefore_) + row + 1; }
  void readTexts(size_t column);
  void refuseWrongType(const Column& column) const;
  [[noreturn]] void refuse(const Column& column, size_t row, const std::string& what) const;

  const std::string& label_;
  FieldRules rules_;
  std::vector<Column> columns_;
  Query query_;
  Chunk chunk_{nullptr};
  int64_t casesBefore_ = 0;
};

}  // namespace workbench
