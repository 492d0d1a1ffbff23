/// What the formats for readers say besides numbers.
#pragma once

#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// A table's title and, for a split group with tables of its own, the group.
std::string tableHeading(const Table& table);

/// A category as a reader sees it: one that reads as nothing says so.
std::string shownCategory(std::string_view text);

/// Footnotes of a table in order of first appearance, with their marks.
class Footnotes {
 public:
  /// The number of a text, new or known.
  size_t numberOf(const std::string& text);
  const std::vector<std::string>& texts() const { return texts_; }
  /// a, b, c, ..., z, aa, ab, ... without q, which has no superscript form.
  static std::string letters(size_t number);
  /// The same as superscript letters.
  static std::string superscript(size_t number);

 private:
  std::vector<std::string> texts_;
};

}  // namespace workbench
