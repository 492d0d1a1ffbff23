/// Where the records of a text and their fields begin and end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/delimited/structure.h"

namespace workbench {

/// Room for positions that grows without being written first.
class PositionList {
 public:
  uint32_t& operator[](size_t index) { return values_[index]; }
  uint32_t operator[](size_t index) const { return values_[index]; }
  const uint32_t* data() const { return values_.get(); }
  uint32_t* roomFor(size_t used, size_t more);  ///< after the first `used` ones

 private:
  std::unique_ptr<uint32_t[]> values_;
  size_t capacity_ = 0;
};

/// Why a record cannot be read.
struct RecordProblem {
  enum class Kind : uint8_t { kFieldCount, kUnclosedQuote, kTextAfterQuote };
  Kind kind = Kind::kFieldCount;
  size_t fields = 0;  ///< that it has
  size_t line = 0;    ///< line ends between the beginning of the text and that of the record
};

/// Records of as many fields as there are columns. Field `column` of `record` begins after
/// position(base(record) + column) and ends before position(base(record) + column + 1); a line end
/// may be CRLF, whose CR then stands at the end of the last field. Lines of nothing but blanks are
/// no records.
class RecordIndex {
 public:
  /// For a text without double quotes that ends with a line end.
  void indexPlain(const char* text, size_t size, char delimiter, size_t columns,
                  const TextSurvey& survey);
  /// For any text. With `final` nothing follows it, and it ends with a line end; else what
  /// follows the last whole record is left alone. `columns` 0 takes records of any number of
  /// fields.
  void indexQuoted(const char* text, size_t size, char delimiter, size_t columns, bool final);

  size_t records() const { return records_; }
  size_t columns() const { return columns_; }
  uint32_t base(size_t record) const {
    return bases_.empty() ? static_cast<uint32_t>(record * columns_) : bases_[record];
  }
  /// base() of all records; null when it is record * columns().
  const uint32_t* bases() const { return bases_.empty() ? nullptr : bases_.data(); }
  const uint32_t* positions() const { return positions_.data(); }
  /// Line ends between the beginning of the text and that of the record.
  size_t lineOf(size_t record) const { return lines_.empty() ? record : lines_[record]; }
  /// Forgets the records that do not end before that position.
  void dropRecordsFrom(size_t position);
  /// The position after the last record or blank line.
  size_t consumed() const { return consumed_; }
  /// What is wrong with the record after those.
  const std::optional<RecordProblem>& problem() const { return problem_; }

 private:
  class Scan;

  void start(size_t columns);
  /// Puts the positions of the characters that matter after the first `used` ones.
  size_t collectPiece(const char* text, size_t at, size_t length, char delimiter, bool quotes,
                      size_t used);
  bool isRegular(const char* text, char delimiter, size_t lineEnds) const;

  PositionList positions_;  // the first one stands before the text
  size_t count_ = 0;        // of positions, that one included
  size_t columns_ = 1;
  size_t records_ = 0;
  std::vector<uint32_t> bases_;  // empty: all records are as they should be
  std::vector<uint32_t> lines_;  // likewise
  size_t consumed_ = 0;
  std::optional<RecordProblem> problem_;
};

}  // namespace workbench
