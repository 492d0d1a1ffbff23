#include "workbench/delimited/record_index.h"

#include <algorithm>

namespace workbench {
namespace {

constexpr uint32_t kBeforeText = 0xFFFFFFFF;  // its successor is position 0
constexpr size_t kPiece = size_t{1} << 16U;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool isBlank(const char* begin, const char* end) {
  return std::all_of(begin, end, [](char c) { return isBlank(c); });
}

}  // namespace

uint32_t* PositionList::roomFor(size_t used, size_t more) {
  if (used + more > capacity_) {
    const size_t capacity = std::max(used + more, capacity_ * 2);
    std::unique_ptr<uint32_t[]> values(new uint32_t[capacity]);
    std::copy_n(values_.get(), used, values.get());
    values_ = std::move(values);
    capacity_ = capacity;
  }
  return values_.get() + used;
}

/// Goes over the characters that matter and leaves, in the same place, the positions of those that
/// do divide.
class RecordIndex::Scan {
 public:
  Scan(RecordIndex& index, const char* text, size_t size, char delimiter)
      : index_(index), text_(text), size_(size), delimiter_(delimiter) {}

  /// The next characters, whose positions stand after those that were kept. False when a record is
  /// refused.
  bool take(size_t specials) {
    const size_t end = out_ + 1 + specials;
    for (size_t i = out_ + 1; i < end; ++i) {
      const uint32_t at = index_.positions_[i];
      const char c = text_[at];
      if (doubled_) {
        doubled_ = false;
      } else if (state_ == State::kQuoted) {
        if (c != '"') {
          if (c != delimiter_) ++linesInside_;
        } else if (at + 1 < size_ && text_[at + 1] == '"') {
          doubled_ = true;
        } else {
          state_ = State::kClosed;
          closed_ = at;
        }
      } else if (c == '"') {
        if (!openQuote(at)) {
          refuse(RecordProblem::Kind::kTextAfterQuote);
          return false;
        }
      } else if (!endField(at, c != delimiter_)) {
        return false;
      }
    }
    return true;
  }

  /// Nothing follows the text.
  void finish() {
    if (state_ == State::kQuoted) refuse(RecordProblem::Kind::kUnclosedQuote);
  }

  size_t kept() const { return out_; }

 private:
  enum class State : uint8_t { kOpen, kQuoted, kClosed };

  /// False: it follows a field that is closed already. Inside an unquoted field it is a character
  /// like any other.
  bool openQuote(uint32_t at) {
    if (state_ == State::kClosed) return false;
    if (isBlank(text_ + fieldBegin_, text_ + at)) state_ = State::kQuoted;
    return true;
  }

  bool endField(uint32_t at, bool endsRecord) {
    const uint32_t end =
        endsRecord && text_[at] == '\n' && at > fieldBegin_ && text_[at - 1] == '\r' ? at - 1 : at;
    const bool quoted = state_ == State::kClosed;
    if (quoted && !isBlank(text_ + closed_ + 1, text_ + end)) {
      refuse(RecordProblem::Kind::kTextAfterQuote);
      return false;
    }
    state_ = State::kOpen;
    index_.positions_[++out_] = at;
    ++fields_;
    const bool blank =
        endsRecord && fields_ == 1 && !quoted && isBlank(text_ + fieldBegin_, text_ + end);
    fieldBegin_ = at + 1;
    return !endsRecord || endRecord(at, blank);
  }

  bool endRecord(uint32_t at, bool blank) {
    if (!blank) {
      if (index_.columns_ != 0 && fields_ != index_.columns_) {
        refuse(RecordProblem::Kind::kFieldCount);
        return false;
      }
      index_.bases_.push_back(recordBase_);
      index_.lines_.push_back(static_cast<uint32_t>(line_));
      ++index_.records_;
    }
    recordBase_ = static_cast<uint32_t>(out_);
    line_ += 1 + linesInside_;
    linesInside_ = 0;
    fields_ = 0;
    index_.consumed_ = at + size_t{1};
    return true;
  }

  void refuse(RecordProblem::Kind kind) { index_.problem_ = RecordProblem{kind, fields_, line_}; }

  RecordIndex& index_;
  const char* text_;
  size_t size_;
  char delimiter_;
  State state_ = State::kOpen;
  bool doubled_ = false;  // the next one is the second quote of a pair
  uint32_t fieldBegin_ = 0;
  uint32_t closed_ = 0;      // where the closing quote stands
  size_t fields_ = 0;        // of the record so far
  size_t out_ = 0;           // the last position that was kept
  uint32_t recordBase_ = 0;  // the position before the record
  size_t line_ = 0;          // on which the record begins
  size_t linesInside_ = 0;   // line ends within its quotes
};

void RecordIndex::start(size_t columns) {
  columns_ = columns;
  records_ = 0;
  bases_.clear();
  lines_.clear();
  consumed_ = 0;
  problem_.reset();
  *positions_.roomFor(0, 1) = kBeforeText;
  count_ = 1;
}

size_t RecordIndex::collectPiece(const char* text, size_t at, size_t length, char delimiter,
                                 bool quotes, size_t used) {
  uint32_t* found = positions_.roomFor(used, length + kReadBeyond);
  const size_t more = structureFunctions().find(text + at, length, delimiter, quotes, found);
  for (size_t i = 0; at > 0 && i < more; ++i) found[i] += static_cast<uint32_t>(at);
  return more;
}

bool RecordIndex::isRegular(const char* text, char delimiter, size_t lineEnds) const {
  // With one column a blank line looks like a record.
  if (columns_ == 1 || count_ - 1 != lineEnds * columns_) return false;
  for (size_t i = columns_; i < count_; i += columns_) {
    if (text[positions_[i]] == delimiter) return false;
  }
  return true;
}

void RecordIndex::indexPlain(const char* text, size_t size, char delimiter, size_t columns,
                             const TextSurvey& survey) {
  start(columns);
  for (size_t at = 0; at < size; at += kPiece) {
    count_ += collectPiece(text, at, std::min(kPiece, size - at), delimiter, false, count_);
  }
  if (isRegular(text, delimiter, survey.lineEnds())) {
    records_ = survey.lineEnds();
    consumed_ = size;
    return;
  }
  Scan scan(*this, text, size, delimiter);
  if (scan.take(count_ - 1)) scan.finish();
}

void RecordIndex::indexQuoted(const char* text, size_t size, char delimiter, size_t columns,
                              bool final) {
  start(columns);
  // A CR at the very end may be half of a line end.
  const size_t known = !final && size > 0 && text[size - 1] == '\r' ? size - 1 : size;
  // What stands inside quotes goes before more is collected, so that it takes no room.
  Scan scan(*this, text, size, delimiter);
  for (size_t at = 0; at < known; at += kPiece) {
    const size_t length = std::min(kPiece, known - at);
    if (!scan.take(collectPiece(text, at, length, delimiter, true, scan.kept() + 1))) return;
  }
  if (final) scan.finish();
}

void RecordIndex::dropRecordsFrom(size_t position) {
  const auto endOf = [&](size_t record) { return positions_[base(record) + columns_]; };
  while (records_ > 0 && endOf(records_ - 1) >= position) --records_;
}

}  // namespace workbench
