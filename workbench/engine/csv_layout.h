/// What the head of a file of delimited text tells about all of it.
///
/// The engine's own detection is not used: it falls back to a single column when rows are ragged,
/// renames columns of equal names, takes `yes` for true, and rounds 1.5 when it meets it late in a
/// column that began with whole numbers.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/engine/column_form.h"

namespace workbench {

struct CsvColumn {
  std::string name;
  ColumnForm form = ColumnForm::kNumber;  ///< that every value of the head has; numbers when empty
  bool whole = true;                      ///< all its numbers are whole and small enough
  bool zoned = false;                     ///< date-times carry their offset from UTC
  bool blanks = false;                    ///< values of nothing but blanks occur
  bool odd = false;                       ///< texts for missing values occur
};

struct CsvLayout {
  char delimiter = ',';
  std::vector<CsvColumn> columns;
  size_t rows = 0;   ///< in the head
  size_t bytes = 0;  ///< that they take
};

/// Texts that stand for missing values in the column of that name.
using MissingTexts = std::function<const std::vector<std::string>&(const std::string& name)>;

/// `head` is the beginning of the text, or all of it when `complete`. `delimiter` 0: found from the
/// header. `file` is for messages. Throws DataError with line when the head is no table: no header,
/// names missing or twice, rows of unequal length, quotes that are not closed, bytes that are not
/// UTF-8.
CsvLayout csvLayout(std::string_view head, bool complete, char delimiter, const std::string& file,
                    const MissingTexts& missing);

/// Walks the records of delimited text with double quotes.
class CsvRecords {
 public:
  CsvRecords(std::string_view text, bool complete, char delimiter)
      : text_(text), complete_(complete), delimiter_(delimiter) {}
  /// False at the end, before a record that is cut off, and after an error.
  bool next();
  const std::vector<std::string>& values() const { return values_; }
  size_t line() const { return recordLine_; }  ///< where the record begins, from 1
  size_t consumed() const { return position_; }
  bool blank() const { return blank_; }
  bool unclosedQuote() const { return unclosed_; }

 private:
  bool atEnd() const { return position_ >= text_.size(); }
  bool readValue(std::string& value);
  bool readQuoted(std::string& value);
  void skipLineEnd();

  std::string_view text_;
  bool complete_;
  char delimiter_;
  size_t position_ = 0;
  size_t line_ = 1;
  size_t recordLine_ = 0;
  bool blank_ = false;
  bool unclosed_ = false;
  std::vector<std::string> values_;
};

}  // namespace workbench
