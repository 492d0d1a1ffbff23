#include "tests/workbench/delimited/plain_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <set>

namespace workbench {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string stripped(std::string text) {
  while (!text.empty() && isBlank(text.back())) text.pop_back();
  while (!text.empty() && isBlank(text.front())) text.erase(text.begin());
  return text;
}

/// Reads records until something is wrong.
class Records {
 public:
  Records(const std::string& text, char delimiter) : text_(text), delimiter_(delimiter) {}

  /// False at the end and when refused.
  bool next(PlainRecord& record) {
    for (;;) {
      if (at_ == text_.size()) return false;
      record.line = line_;
      record.fields.clear();
      bool quoted = false;
      do {
        record.fields.emplace_back();
        if (!field(record.fields.back(), quoted)) {
          refusedLine = record.line;
          return false;
        }
      } while (take(delimiter_));
      lineEnd();
      if (record.fields.size() > 1 || quoted || !record.fields[0].empty()) return true;
    }
  }

  std::string refusal;
  size_t refusedLine = 0;

 private:
  bool take(char c) {
    if (at_ == text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  void lineEnd() {
    if (at_ == text_.size()) return;
    const bool carriage = text_[at_++] == '\r';
    if (carriage) take('\n');
    ++line_;
  }

  bool atFieldEnd() const {
    return at_ == text_.size() || text_[at_] == delimiter_ || text_[at_] == '\n' ||
           text_[at_] == '\r';
  }

  void skipBlanks() {
    while (!atFieldEnd() && isBlank(text_[at_])) ++at_;
  }

  bool field(std::string& value, bool& quoted) {
    skipBlanks();
    quoted = at_ < text_.size() && text_[at_] == '"';
    if (!quoted) {
      while (!atFieldEnd()) value += text_[at_++];
      value = stripped(value);
      return true;
    }
    ++at_;
    for (;;) {
      if (at_ == text_.size()) {
        refusal = "unclosed";
        return false;
      }
      const char c = text_[at_];
      if (c == '"') {
        ++at_;
        if (!take('"')) break;
        value += '"';
        continue;
      }
      if (c == '\n' || (c == '\r' && (at_ + 1 == text_.size() || text_[at_ + 1] != '\n'))) ++line_;
      value += c;
      ++at_;
    }
    skipBlanks();
    if (atFieldEnd()) return true;
    refusal = "quote";
    return false;
  }

  const std::string& text_;
  char delimiter_;
  size_t at_ = 0;
  size_t line_ = 1;
};

char delimiterOf(const std::string& text, char decimal) {
  char best = 0;
  char bestOfHeader = decimal == ',' ? ';' : ',';
  size_t most = 1;
  size_t mostOfHeader = 1;
  for (const char candidate : {',', ';', '\t', '|'}) {
    if (candidate == decimal) continue;
    Records records(text, candidate);
    PlainRecord record;
    std::set<size_t> counts;
    size_t read = 0;
    while (read < 101 && records.next(record)) {
      if (read++ == 0 && record.fields.size() > mostOfHeader) {
        mostOfHeader = record.fields.size();
        bestOfHeader = candidate;
      }
      counts.insert(record.fields.size());
    }
    if (!records.refusal.empty() || counts.size() != 1 || *counts.begin() <= most) continue;
    most = *counts.begin();
    best = candidate;
  }
  return best != 0 ? best : bestOfHeader;
}

/// Bytes of a character, by the table of well-formed sequences of the Unicode standard; 0: none.
size_t wellFormed(const std::string& text, size_t at) {
  const auto between = [&](size_t i, unsigned low, unsigned high) {
    if (at + i >= text.size()) return false;
    const auto byte = static_cast<unsigned char>(text[at + i]);
    return byte >= low && byte <= high;
  };
  const auto tail = [&](size_t i) { return between(i, 0x80, 0xBF); };
  if (between(0, 0x01, 0x7F)) return 1;
  if (between(0, 0xC2, 0xDF)) return tail(1) ? 2 : 0;
  if (between(0, 0xE0, 0xE0)) return between(1, 0xA0, 0xBF) && tail(2) ? 3 : 0;
  if (between(0, 0xED, 0xED)) return between(1, 0x80, 0x9F) && tail(2) ? 3 : 0;
  if (between(0, 0xE1, 0xEF)) return tail(1) && tail(2) ? 3 : 0;
  if (between(0, 0xF0, 0xF0)) return between(1, 0x90, 0xBF) && tail(2) && tail(3) ? 4 : 0;
  if (between(0, 0xF1, 0xF3)) return tail(1) && tail(2) && tail(3) ? 4 : 0;
  if (between(0, 0xF4, 0xF4)) return between(1, 0x80, 0x8F) && tail(2) && tail(3) ? 4 : 0;
  return 0;
}

bool refuseBytes(const std::string& text, PlainTable& table) {
  size_t line = 1;
  for (size_t at = 0; at < text.size();) {
    const size_t length = wellFormed(text, at);
    if (length == 0) {
      table.refusal = "bytes";
      table.refusedLine = line;
      return true;
    }
    const bool pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    if ((text[at] == '\n' || text[at] == '\r') && !pair) ++line;
    at += length;
  }
  return false;
}

}  // namespace

std::string shownNumber(double number) {
  if (std::isnan(number)) return ".";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return text;
}

PlainTable readPlainly(std::string text, char delimiter, char decimal) {
  PlainTable table;
  if (refuseBytes(text, table)) return table;
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  table.delimiter = delimiter != 0 ? delimiter : delimiterOf(text, decimal);
  Records records(text, table.delimiter);
  if (!records.next(table.header)) {
    table.refusal = records.refusal.empty() ? "empty" : records.refusal;
    table.refusedLine = records.refusedLine;
    return table;
  }
  PlainRecord record;
  while (records.next(record)) {
    if (record.fields.size() != table.header.fields.size()) {
      table.refusal = "fields";
      table.refusedLine = record.line;
      return table;
    }
    table.records.push_back(record);
  }
  table.refusal = records.refusal;
  table.refusedLine = records.refusedLine;
  return table;
}

std::vector<std::string> PlainTable::column(size_t position, const FieldRules& rules) const {
  KindSet kinds;
  std::vector<FieldValue> values;
  for (const PlainRecord& record : records) {
    values.push_back(interpretField(record.fields[position], rules));
    kinds.add(values.back());
  }
  const FieldKind kind = kinds.columnKind();
  std::vector<std::string> shown{std::string(nameOf(kind))};
  for (size_t i = 0; i < values.size(); ++i) {
    if (isMissingIn(kind, values[i])) {
      shown.emplace_back(".");
    } else if (kind == FieldKind::kText) {
      std::string text = records[i].fields[position];
      while (!text.empty() && text.back() == ' ') text.pop_back();
      shown.push_back('[' + text + ']');
    } else if (values[i].flaw != NumberFlaw::kNone) {
      return {"refused", std::to_string(records[i].line)};
    } else {
      shown.push_back(shownNumber(values[i].number));
    }
  }
  return shown;
}

}  // namespace workbench
