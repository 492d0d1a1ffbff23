#include "tests/workbench/delimited/delimited_text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tests/workbench/delimited/plain_reader.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

std::string shown(const CodedColumn& column, size_t entry) {
  if (column.isWide()) return shownNumber(column.wide[entry]);
  const uint32_t code = column.code(entry);
  if (code == 0) return ".";
  return column.kind == FieldKind::kText ? '[' + column.texts[code] + ']'
                                         : shownNumber(column.numbers[code]);
}

std::vector<std::string> writtenOut(const DelimitedCases& cases, const CodedColumn& column) {
  std::vector<std::string> values{std::string(nameOf(column.kind))};
  for (size_t entry = 0; entry < cases.entries; ++entry) {
    const int64_t repeats = entry < cases.repeats.size() ? cases.repeats[entry] : 1;
    values.insert(values.end(), static_cast<size_t>(repeats), shown(column, entry));
  }
  return values;
}

std::vector<std::vector<std::string>> fromBlocks(DelimitedData& data,
                                                 const DelimitedRequest& request,
                                                 const DelimitedCases& cases) {
  std::vector<std::vector<std::string>> columns;
  for (const CodedColumn& column : cases.columns) {
    columns.push_back({std::string(nameOf(column.kind))});
  }
  data.forEachBlock(request, cases, [&](const DelimitedBlock& block) {
    for (size_t i = 0; i < columns.size(); ++i) {
      for (const double number : block.columns[i].numbers)
        columns[i].push_back(shownNumber(number));
      for (const std::string_view text : block.columns[i].texts) {
        columns[i].push_back(text.empty() ? "." : '[' + std::string(text) + ']');
      }
    }
  });
  return columns;
}

}  // namespace

TextFile::TextFile(std::string_view bytes, const std::string& ending) {
  const char* folder = std::getenv("TMPDIR");
  path_ = std::string(folder != nullptr ? folder : "/tmp") + "/delimitedXXXXXX" + ending;
  const int file = mkstemps(path_.data(), static_cast<int>(ending.size()));
  if (file < 0) throw std::runtime_error("cannot make " + path_);
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t count = write(file, bytes.data() + done, bytes.size() - done);
    if (count <= 0) throw std::runtime_error("cannot write " + path_);
    done += static_cast<size_t>(count);
  }
  close(file);
}

TextFile::~TextFile() { unlink(path_.c_str()); }

std::vector<std::vector<std::string>> columnsOf(const std::string& path, ReadAs how) {
  if (how.options.parts.empty()) how.options.parts = {{path, "FILE", {}}};
  DelimitedData data(how.options);
  if (how.request.columns.empty()) {
    for (size_t i = 0; i < data.names().size(); ++i) how.request.columns.push_back({i, {}, {}});
  }
  const DelimitedCases cases = data.read(how.request);
  if (!cases.complete) return fromBlocks(data, how.request, cases);
  std::vector<std::vector<std::string>> columns;
  for (const CodedColumn& column : cases.columns) columns.push_back(writtenOut(cases, column));
  return columns;
}

std::vector<std::string> sortedRows(const std::vector<std::vector<std::string>>& columns) {
  std::vector<std::string> rows(columns.empty() ? 0 : columns.front().size());
  for (const std::vector<std::string>& column : columns) {
    for (size_t i = 0; i < rows.size(); ++i) rows[i] += column[i] + '|';
  }
  if (rows.size() > 1) std::sort(rows.begin() + 1, rows.end());
  return rows;
}

std::vector<std::vector<std::string>> columnsOfText(std::string_view text, ReadAs how) {
  const TextFile file(text);
  how.request.counting = Counting::kNever;
  try {
    return columnsOf(file.path(), std::move(how));
  } catch (const DataError& error) {
    return {{error.what()}};
  }
}

std::string refusalOf(std::string_view text, ReadAs how) {
  const auto columns = columnsOfText(text, std::move(how));
  const std::string& first = columns.front().front();
  return first.rfind("FILE", 0) == 0 ? first.substr(4) : "";
}

}  // namespace workbench
