/// Texts read through the real reader, and shown like those of the plain one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/delimited/delimited_data.h"

namespace workbench {

/// A file of the program's temporary folder, removed with the object.
class TextFile {
 public:
  explicit TextFile(std::string_view bytes, const std::string& ending = ".csv");
  ~TextFile();
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

struct ReadAs {
  DelimitedOptions options;  ///< the parts are filled in
  DelimitedRequest request;  ///< without columns: all
};

/// The columns, as PlainTable::column shows them; counted cases are written out as often as they
/// occur.
std::vector<std::vector<std::string>> columnsOf(const std::string& path, ReadAs how = {});

/// As rows in ascending order, for comparisons that do not depend on the order of the cases.
std::vector<std::string> sortedRows(const std::vector<std::vector<std::string>>& columns);

/// The columns of a text, case by case; or the message, as the only value of the only column.
std::vector<std::vector<std::string>> columnsOfText(std::string_view text, ReadAs how = {});

/// The message of the refusal, without the file's name; empty when the text is read.
std::string refusalOf(std::string_view text, ReadAs how = {});

}  // namespace workbench
