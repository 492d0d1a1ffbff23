/// What the formats for readers say besides tables.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// A table's title and, for a split group with tables of its own, the group.
std::string tableHeading(const Table& table);

/// Footnotes of a table in order of appearance, with their marks a, b, c ...
class Footnotes {
 public:
  /// The mark of a text, new or known: "a".
  std::string mark(const std::string& text);
  const std::vector<std::string>& texts() const { return texts_; }
  static std::string letter(size_t index);

 private:
  std::vector<std::string> texts_;
};

}  // namespace workbench
