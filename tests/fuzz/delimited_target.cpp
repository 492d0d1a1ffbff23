// Any bytes as delimited text: the reader, cut into blocks of any size and shared among threads,
// against the plain one of the tests.
#include "tests/fuzz/target.h"
#include "tests/workbench/delimited/delimited_text.h"
#include "tests/workbench/delimited/plain_reader.h"
#include "workbench/values/data_error.h"

namespace {

using Columns = std::vector<std::vector<std::string>>;

struct Reading {
  Columns columns;
  std::string refusal;
};

Reading readReally(const std::string& path, const workbench::ReadAs& how) {
  try {
    return {workbench::columnsOf(path, how), ""};
  } catch (const workbench::DataError& error) {
    return {{}, error.what()};
  }
}

std::string shown(const Columns& columns) {
  std::string text;
  for (const std::vector<std::string>& column : columns) {
    for (const std::string& value : column) text += value + ' ';
    text += '\n';
  }
  return text;
}

/// Names that are no names end a file that is else in order.
bool hasBadNames(const Reading& reading) {
  return reading.refusal.find("Rename one of them") != std::string::npos;
}

/// What the plain reader makes of all columns; a refusal for numbers that are too large.
Reading readPlainly(const workbench::PlainTable& table, const workbench::FieldRules& rules) {
  Reading reading;
  for (size_t i = 0; i < table.header.fields.size(); ++i) {
    reading.columns.push_back(table.column(i, rules));
    if (reading.columns.back().front() == "refused") reading.refusal = "beyond the range";
  }
  return reading;
}

void compare(const workbench::PlainTable& plain, const Reading& expected, const Reading& real,
             bool inOrder) {
  if (hasBadNames(real)) return;
  fuzz::promise(real.refusal.empty() == (plain.refusal.empty() && expected.refusal.empty()),
                "both readers refuse the same", real.refusal + " / " + plain.refusal);
  if (plain.refusal == "bytes" || !expected.refusal.empty()) return;
  if (!plain.refusal.empty()) {
    const std::string line = ", line " + std::to_string(plain.refusedLine) + ":";
    fuzz::promise(plain.refusedLine == 0 || real.refusal.find(line) != std::string::npos,
                  "both readers refuse the same line", real.refusal + " / " + line);
  } else if (inOrder) {
    fuzz::promise(real.columns == expected.columns, "both readers give the same cases",
                  shown(real.columns) + shown(expected.columns));
  } else {
    fuzz::promise(workbench::sortedRows(real.columns) == workbench::sortedRows(expected.columns),
                  "counted cases are the same cases",
                  shown(real.columns) + shown(expected.columns));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  fuzz::Choices choices(bytes, size);
  static constexpr char kDelimiters[] = {0, 0, ',', ';', '\t', '|'};
  workbench::ReadAs how;
  how.options.delimiter = choices.of(kDelimiters);
  how.options.rules.decimal = how.options.delimiter != ',' && choices.flag() ? ',' : '.';
  const size_t block = 1 + choices.byte();
  const size_t used = std::min<size_t>(size, 3);
  const std::string text(reinterpret_cast<const char*>(bytes) + used, size - used);

  const workbench::PlainTable plain =
      workbench::readPlainly(text, how.options.delimiter, how.options.rules.decimal);
  const Reading expected =
      plain.refusal.empty() ? readPlainly(plain, how.options.rules) : Reading();
  const workbench::TextFile file(text);
  how.options.threads = 1;
  how.request.counting = workbench::Counting::kNever;
  compare(plain, expected, readReally(file.path(), how), true);
  how.options.blockBytes = block;
  how.options.threads = 3;
  compare(plain, expected, readReally(file.path(), how), true);
  how.request.counting = workbench::Counting::kAlways;
  compare(plain, expected, readReally(file.path(), how), false);
  how.request.memoryLimit = 1;
  compare(plain, expected, readReally(file.path(), how), true);
  return 0;
}
