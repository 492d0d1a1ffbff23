#include "workbench/delimited/part_head.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "workbench/delimited/field_text.h"
#include "workbench/text/utf8.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr std::array kDelimiters{',', ';', '\t', '|'};
constexpr size_t kRecordsLookedAt = 101;  // the header, too
constexpr size_t kMostColumns = 1'000'000;
constexpr size_t kFirstRead = size_t{1} << 16U;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string shown(char delimiter) {
  return delimiter == '\t' ? "tab" : fmt::format("'{}'", delimiter);
}

/// The first bytes of a text, in growing number.
class Head {
 public:
  Head(TextStream& stream, size_t most) : stream_(stream), most_(most) {}

  void grow() {
    const size_t wanted = std::max(kFirstRead, std::min(size_ * 4, most_ + 1));
    bytes_.resize(wanted + kReadBeyond + 1);
    while (size_ < wanted && !complete_) {
      const size_t count = stream_.read(bytes_.data() + size_, wanted - size_);
      size_ += count;
      complete_ = count == 0;
    }
    std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(size_), bytes_.end(), '\0');
    mark_ = std::string_view(bytes_).substr(0, kByteOrderMark.size()) == kByteOrderMark
                ? kByteOrderMark.size()
                : 0;
    // The last line counts with or without its end.
    ended_ = !complete_ || size_ == mark_ || bytes_[size_ - 1] == '\n' || bytes_[size_ - 1] == '\r';
    if (!ended_) bytes_[size_] = '\n';
  }

  bool complete() const { return complete_; }
  bool full() const { return size_ > most_; }
  size_t mark() const { return mark_; }
  /// Behind the byte order mark, with an end to its last line.
  std::string_view text() const {
    return std::string_view(bytes_).substr(mark_, size_ - mark_ + (ended_ ? 0 : 1));
  }
  bool isEmpty() const { return size_ == mark_; }
  size_t size() const { return size_ - mark_; }

 private:
  TextStream& stream_;
  size_t most_;
  std::string bytes_;
  size_t size_ = 0;
  size_t mark_ = 0;
  bool complete_ = false;
  bool ended_ = true;
};

/// How a delimiter splits the head.
class Split {
 public:
  Split(const Head& head, char delimiter) : text_(head.text()), delimiter_(delimiter) {
    constexpr size_t kAnyNumber = 0;
    index_.indexQuoted(text_.data(), text_.size(), delimiter, kAnyNumber, head.complete());
  }

  const RecordIndex& index() const { return index_; }
  size_t records() const { return std::min(index_.records(), kRecordsLookedAt); }
  size_t fields(size_t record) const {
    size_t count = 1;
    while (text_[index_.positions()[index_.base(record) + count]] == delimiter_) ++count;
    return count;
  }
  /// Of the header and all other records; 0 when they differ or one of them is faulty.
  size_t commonFields() const {
    if (records() == 0 || (records() < kRecordsLookedAt && index_.problem())) return 0;
    const size_t first = fields(0);
    for (size_t i = 1; i < records(); ++i) {
      if (fields(i) != first) return 0;
    }
    return first;
  }
  size_t headerFields() const { return records() == 0 ? 0 : fields(0); }
  size_t headerEnd() const { return index_.positions()[index_.base(0) + fields(0)] + size_t{1}; }

 private:
  std::string_view text_;
  char delimiter_;
  RecordIndex index_;
};

/// Whether more of the text would tell more about how the delimiter splits it.
bool mustGrow(const Head& head, char delimiter, size_t records) {
  if (head.complete() || head.full()) return false;
  const Split split(head, delimiter);
  return split.records() < records && !split.index().problem();
}

char findDelimiter(Head& head, char decimal) {
  std::vector<char> candidates(kDelimiters.begin(), kDelimiters.end());
  std::erase(candidates, decimal);
  for (const char candidate : candidates) {
    while (mustGrow(head, candidate, kRecordsLookedAt)) head.grow();
  }
  const auto best = [&](size_t (Split::*fields)() const) {
    char found = candidates.front();
    size_t most = 1;
    for (const char candidate : candidates) {
      const size_t count = (Split(head, candidate).*fields)();
      if (count > most) found = candidate;
      most = std::max(most, count);
    }
    return std::pair(found, most);
  };
  if (const auto [found, fields] = best(&Split::commonFields); fields > 1) return found;
  return best(&Split::headerFields).first;
}

void refuseWrongBytes(std::string_view header, const std::string& label) {
  const size_t zero = header.find('\0');
  const size_t invalid = firstInvalidUtf8(header);
  if (zero == std::string_view::npos && invalid == std::string_view::npos) return;
  const uint64_t line = 1 + countLineEnds(header.substr(0, std::min(zero, invalid)));
  throw DataError(invalid < zero ? encodingMessage(label, line) : nulMessage(label, line));
}

}  // namespace

size_t countLineEnds(std::string_view text) {
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if ((text[i] == '\n' || text[i] == '\r') && !pair) ++count;
  }
  return count;
}

std::string nulMessage(const std::string& label, uint64_t line) {
  return fmt::format(
      "{}, line {}: there is a NUL byte, so this is no text, or one in another encoding. Name the "
      "encoding with --encoding (UTF-16, say).",
      label, line);
}

std::string longRecordMessage(const std::string& label, uint64_t line, size_t longestRecord) {
  return fmt::format(
      "{}, line {}: the record that begins here is longer than {} bytes. Look for a double quote "
      "that is never closed.",
      label, line, longestRecord);
}

std::string encodingMessage(const std::string& label, uint64_t line) {
  return fmt::format(
      "{}, line {}: there are bytes that are not UTF-8. Name the encoding with --encoding "
      "(windows-1252, say).",
      label, line);
}

std::string messageOf(const RecordProblem& problem, const std::string& label, uint64_t firstLine,
                      size_t columns, char delimiter) {
  const uint64_t line = firstLine + problem.line;
  switch (problem.kind) {
    case RecordProblem::Kind::kUnclosedQuote:
      return fmt::format(
          "{}, line {}: a double quote is opened in this record and never closed. Close it, or "
          "write it twice inside a field in double quotes.",
          label, line);
    case RecordProblem::Kind::kTextAfterQuote:
      return fmt::format(
          "{}, line {}: there is text after the closing double quote of a field. Write a double "
          "quote that belongs to the field twice.",
          label, line);
    case RecordProblem::Kind::kFieldCount:
      break;
  }
  return fmt::format(
      "{}, line {}: {} field{} where the header has {} (separated by {}). Give every record as "
      "many "
      "fields as the header has names; a field that holds the separator stands in double quotes.",
      label, line, problem.fields, problem.fields == 1 ? "" : "s", columns, shown(delimiter));
}

PartHead readHead(TextStream& text, const std::string& label, char delimiter, char decimal,
                  size_t longestRecord) {
  Head head(text, longestRecord);
  head.grow();
  PartHead found;
  found.delimiter = delimiter != 0 ? delimiter : findDelimiter(head, decimal);
  while (mustGrow(head, found.delimiter, 1)) head.grow();
  const Split split(head, found.delimiter);
  if (split.records() == 0) {
    refuseWrongBytes(head.text(), label);
    if (const auto& problem = split.index().problem()) {
      throw DataError(messageOf(*problem, label, 1, 0, found.delimiter));
    }
    if (!head.complete()) throw DataError(longRecordMessage(label, 1, longestRecord));
    throw DataError(fmt::format(
        "{}: the file is empty. The first line must hold the names of the columns.", label));
  }
  const std::string_view header = head.text().substr(0, split.headerEnd());
  refuseWrongBytes(header, label);
  const size_t line = split.index().lineOf(0) + 1;
  const size_t columns = split.fields(0);
  if (columns > kMostColumns) {
    throw DataError(fmt::format("{}, line {}: the header has {} columns; up to {} can be read.",
                                label, line, columns, kMostColumns));
  }
  std::string buffer;
  const uint32_t* positions = split.index().positions() + split.index().base(0);
  for (size_t i = 0; i < columns; ++i) {
    const uint32_t begin = positions[i] + 1;
    const std::string_view field = header.substr(begin, positions[i + 1] - begin);
    const size_t end = field.find_last_not_of('\r');
    const std::string_view name = fieldText(field.substr(0, end + 1), buffer);
    const size_t first = name.find_first_not_of(" \t");
    found.names.emplace_back(first == std::string_view::npos
                                 ? std::string_view()
                                 : name.substr(first, name.find_last_not_of(" \t") - first + 1));
  }
  refuseEqualNames(found.names, fmt::format("{}, line {}", label, line));
  found.lines = countLineEnds(header);
  found.bytes = head.mark() + std::min(header.size(), head.size());
  return found;
}

}  // namespace workbench
