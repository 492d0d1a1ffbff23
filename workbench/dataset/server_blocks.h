/// The rows of a server's statement as values of cases.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/spelled_column.h"
#include "workbench/odbc/counting_statement.h"
#include "workbench/odbc/server_relation.h"

namespace workbench {

/// The kind of a variable whose values the server holds, as far as it is known before they are
/// read.
ValueKind valueKindOf(ServerKind kind);

/// How the columns of a request are selected.
SelectedColumn selectedColumn(const ServerColumn& column, const ColumnType& type);

/// Reads the first columns of a statement's rows, block by block. There are three kinds of them:
/// numbers, texts that stay what they are, and spelled ones, whose values decide what they are.
class ServerBlocks {
 public:
  /// What becomes of the values of spelled columns.
  enum class Use {
    kCodes,  ///< each different one gets a code
    kNote,   ///< they are taken into account for the kind, without being kept
    kValues  ///< they become numbers or texts of the kind that is known
  };

  /// `what` names a row in messages ("case").
  ServerBlocks(ServerRelation& relation, const CaseRequest& request, const FieldRules& rules,
               const std::string& what);

  /// Which columns come as numbers in memory, for ServerStatement::asDoubles.
  std::vector<bool> inMemory() const;

  void beginBlock();
  /// Takes the row at hand. Throws DataError for a value that cannot be held.
  void take(const ServerStatement& statement, Use use);
  void endBlock();
  size_t rows() const { return rows_; }

  /// By column; spelled ones count as texts until they are finished.
  std::vector<ValueKind> kinds() const;
  bool isSpelled(size_t column) const { return columns_[column].spelled.has_value(); }
  bool isText(size_t column) const { return columns_[column].isText; }
  /// Whether values must all be seen before the kinds of all columns are known.
  bool anyOpen() const;

  /// Of the block at hand, as CaseColumn has them.
  const std::vector<double>& numbers(size_t column) const { return columns_[column].numbers; }
  const std::vector<std::string_view>& texts(size_t column) const { return columns_[column].texts; }
  const std::vector<uint32_t>& codes(size_t column) const { return columns_[column].codes; }

  SpelledColumn& spelled(size_t column) { return *columns_[column].spelled; }
  /// Gives a column its kind and, when it is spelled and all its cases are there, its values.
  void finish(size_t column, bool complete, CaseColumn& into) const;
  /// The spelled columns in order, to be handed to another reading of the same request.
  std::vector<SpelledColumn> takeSpelled();
  void understandAs(const std::vector<SpelledColumn>& spelled);
  void forgetTexts();

 private:
  struct Column {
    ServerColumn server;
    ColumnType type;
    bool isText = false;
    ValueKind native = ValueKind::kNumber;
    std::vector<double> categories;  // of enumerations: the number of each category
    std::optional<SpelledColumn> spelled;
    bool onlyZeroOne = true;  // of those that are booleans then
    bool anyValue = false;
    std::vector<double> numbers;
    std::string made;          // the text of the number at hand
    std::string bytes;         // of the block's texts
    std::vector<size_t> ends;  // of each text
    std::vector<std::string_view> texts;
    std::vector<uint32_t> codes;
  };
  /// A value as its server told it.
  struct Told {
    Spelling spelling = Spelling::kMissing;
    std::string_view text;
  };
  Told told(const ServerStatement& statement, size_t position);
  Told marked(Column& column, std::string_view text) const;
  static std::string_view madeText(Column& column, std::string_view number, bool binary);
  void takeNumber(const ServerStatement& statement, size_t position);
  void takeText(Column& column, std::string_view text);
  void takeSpelled(Column& column, const Told& value, Use use);
  void notice(Column& column, double value);
  bool isBoolean(const Column& column) const;
  [[noreturn]] void refuse(const Column& column, const std::string& what) const;

  const std::string place_;
  const bool isMarked_;
  FieldRules rules_;
  std::vector<Column> columns_;
  size_t rows_ = 0;  // of the block at hand
  uint64_t taken_ = 0;
};

}  // namespace workbench
