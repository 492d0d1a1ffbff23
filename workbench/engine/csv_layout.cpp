#include "workbench/engine/csv_layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr std::array kDelimiters{',', ';', '\t', '|'};

std::string shownDelimiter(char delimiter) {
  return delimiter == '\t' ? "tab" : fmt::format("'{}'", delimiter);
}

/// The delimiter that the header holds most often outside quotes.
char delimiterOf(std::string_view head) {
  std::array<size_t, kDelimiters.size()> counts{};
  bool quoted = false;
  for (const char c : head) {
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (c == '\n' || c == '\r') break;
    const auto found = std::find(kDelimiters.begin(), kDelimiters.end(), c);
    if (found != kDelimiters.end()) ++counts[static_cast<size_t>(found - kDelimiters.begin())];
  }
  const auto most = std::max_element(counts.begin(), counts.end());
  return kDelimiters[static_cast<size_t>(most - counts.begin())];
}

size_t lineOf(std::string_view text, size_t position) {
  return 1 + static_cast<size_t>(std::count(
                 text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
}

void refuseWrongBytes(std::string_view head, bool complete, const std::string& file) {
  if (head.size() >= 2 && (head.substr(0, 2) == "\xFF\xFE" || head.substr(0, 2) == "\xFE\xFF")) {
    throw DataError(
        fmt::format("{}: this is UTF-16 text; convert it to UTF-8, for example with "
                    "iconv -f UTF-16 -t UTF-8.",
                    file));
  }
  if (const size_t zero = head.find('\0'); zero != std::string_view::npos) {
    throw DataError(fmt::format("{}, line {}: there is a zero byte, so this is not plain text.",
                                file, lineOf(head, zero)));
  }
  const size_t wrong = firstInvalidUtf8(head);
  // A head may end inside a character.
  if (wrong == std::string_view::npos || (!complete && wrong + 4 > head.size())) return;
  throw DataError(
      fmt::format("{}, line {}: the text is not UTF-8; convert it, for example with "
                  "iconv -f LATIN1 -t UTF-8.",
                  file, lineOf(head, wrong)));
}

/// Which forms all values of a column have had so far.
struct Candidates {
  bool number = true;
  bool boolean = true;
  bool date = true;
  bool time = true;
  bool dateTime = true;
  bool any = false;

  void see(const std::string& value, CsvColumn& column) {
    any = true;
    if (number && !isNumberText(value)) number = false;
    if (number && column.whole && !isWholeText(value)) column.whole = false;
    if (boolean && !isBooleanText(value)) boolean = false;
    if (date && !isDateText(value)) date = false;
    if (time && !isTimeText(value)) time = false;
    bool zoned = false;
    if (dateTime && !isDateTimeText(value, zoned)) dateTime = false;
    column.zoned = column.zoned || zoned;
  }

  ColumnForm form() const {
    if (!any || number) return ColumnForm::kNumber;
    if (boolean) return ColumnForm::kBoolean;
    if (date) return ColumnForm::kDate;
    if (time) return ColumnForm::kTime;
    if (dateTime) return ColumnForm::kDateTime;
    return ColumnForm::kString;
  }
};

void refuseUnclosedQuote(const CsvRecords& records, const std::string& file) {
  if (!records.unclosedQuote()) return;
  throw DataError(
      fmt::format("{}, line {}: a double quote is opened and never closed.", file, records.line()));
}

void readHeader(CsvRecords& records, CsvLayout& layout, const std::string& file) {
  if (!records.next() || records.blank()) {
    refuseUnclosedQuote(records, file);
    throw DataError(
        fmt::format("{}, line 1: the first line must hold the names of the variables.", file));
  }
  std::vector<std::string> names;
  for (const std::string& name : records.values()) names.emplace_back(stripped(name));
  refuseBadNames(names, fmt::format("{}, line 1", file));
  for (std::string& name : names) layout.columns.emplace_back().name = std::move(name);
}

void refuseRagged(const CsvRecords& records, const CsvLayout& layout, const std::string& file) {
  const size_t found = records.values().size();
  if (found == layout.columns.size()) return;
  throw DataError(
      fmt::format("{}, line {}: {} value{} where the header has {} (separated by {}). "
                  "Give every line as many values as the header has names; a value "
                  "that holds the separator stands in double quotes.",
                  file, records.line(), found, found == 1 ? "" : "s", layout.columns.size(),
                  shownDelimiter(layout.delimiter)));
}

}  // namespace

bool CsvRecords::readQuoted(std::string& value) {
  ++position_;
  for (; !atEnd(); ++position_) {
    const char c = text_[position_];
    if (c == '\n') ++line_;
    if (c != '"') {
      value += c;
    } else if (position_ + 1 < text_.size() && text_[position_ + 1] == '"') {
      value += c;
      ++position_;
    } else {
      ++position_;
      return true;
    }
  }
  unclosed_ = complete_;
  return false;
}

bool CsvRecords::readValue(std::string& value) {
  if (!atEnd() && text_[position_] == '"' && !readQuoted(value)) return false;
  while (!atEnd()) {
    const char c = text_[position_];
    if (c == delimiter_ || c == '\n' || c == '\r') return true;
    value += c;
    ++position_;
  }
  return complete_;
}

void CsvRecords::skipLineEnd() {
  if (atEnd()) return;
  const bool carriage = text_[position_++] == '\r';
  if (carriage && !atEnd() && text_[position_] == '\n') ++position_;
  ++line_;
}

bool CsvRecords::next() {
  if (atEnd()) return false;
  recordLine_ = line_;
  values_.clear();
  const size_t begin = position_;
  for (;;) {
    if (!readValue(values_.emplace_back())) {
      position_ = begin;
      return false;
    }
    if (atEnd() || text_[position_] != delimiter_) break;
    ++position_;
  }
  blank_ = values_.size() == 1 && position_ == begin;
  skipLineEnd();
  return true;
}

CsvLayout csvLayout(std::string_view head, bool complete, char delimiter, const std::string& file,
                    const MissingTexts& missing) {
  if (head.empty()) {
    throw DataError(
        fmt::format("{}: the file is empty; the first line must hold the names of the "
                    "variables.",
                    file));
  }
  refuseWrongBytes(head, complete, file);
  if (head.substr(0, 3) == "\xEF\xBB\xBF") head.remove_prefix(3);
  CsvLayout layout;
  layout.delimiter = delimiter != 0 ? delimiter : delimiterOf(head);
  CsvRecords records(head, complete, layout.delimiter);
  readHeader(records, layout, file);
  const size_t headerBytes = records.consumed();
  std::vector<Candidates> candidates(layout.columns.size());
  std::vector<const std::vector<std::string>*> missingTexts;
  for (const CsvColumn& column : layout.columns) missingTexts.push_back(&missing(column.name));
  while (records.next()) {
    if (records.blank() && layout.columns.size() > 1) continue;
    refuseRagged(records, layout, file);
    ++layout.rows;
    for (size_t i = 0; i < candidates.size(); ++i) {
      const std::string& value = records.values()[i];
      if (value.empty()) continue;
      const auto& texts = *missingTexts[i];
      if (std::find(texts.begin(), texts.end(), value) != texts.end()) {
        layout.columns[i].odd = true;
      } else if (stripped(value).empty()) {
        layout.columns[i].blanks = true;
      } else {
        candidates[i].see(value, layout.columns[i]);
      }
    }
  }
  refuseUnclosedQuote(records, file);
  layout.bytes = records.consumed() - headerBytes;
  for (size_t i = 0; i < candidates.size(); ++i) layout.columns[i].form = candidates[i].form();
  return layout;
}

}  // namespace workbench
