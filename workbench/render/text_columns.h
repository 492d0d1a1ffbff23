/// The columns of numbers of a table as text.
#pragma once

#include <string>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/footnotes.h"
#include "workbench/render/text_block.h"
#include "workbench/results/grid.h"

namespace workbench {

/// How much room headings may take beyond that of their cells.
enum class HeadingWidth : uint8_t { kComfortable, kTight };

/// Headed in levels, numbers aligned on the decimal point.
class TextColumns {
 public:
  /// Adds the notes of headings and cells to `footnotes`. All arguments stay borrowed.
  TextColumns(const Grid& grid, const CellTexts& texts, Footnotes& footnotes);

  size_t count() const { return columns_.size(); }
  /// Lays the columns from `first` on out; has to come before what follows.
  void layOut(size_t first, HeadingWidth headings);
  size_t width() const { return spanWidth(first_, columns_.size()); }
  Block headings() const;
  std::string cellsOf(size_t row) const;

  /// The first of the columns that share a column's outermost heading.
  size_t groupStart(size_t column) const;
  /// True when both rows read the same in a column.
  bool readAlike(size_t column, size_t row, size_t other) const;
  /// The heading of a column in one line, with the groups that it stands in.
  std::string nameOf(size_t column) const;
  /// The innermost heading of a column.
  const std::string& shortNameOf(size_t column) const { return columns_[column].path.back(); }
  std::string textOf(size_t column, size_t row) const;

 private:
  /// A number cut at its decimal point, so that points stand below each other. A word is all rest.
  struct Pieces {
    std::string whole;
    std::string rest;
    bool isWord = false;
  };

  struct Column {
    std::vector<std::string> path;  // headings of all levels; a short path stands at the bottom
    std::vector<Pieces> cells;
    size_t wholeWidth = 0;
    size_t restWidth = 0;
    size_t cellWidth = 0;
    size_t width = 0;
  };

  static Pieces cutAtPoint(const std::string& text);
  std::vector<std::string> pathOf(size_t place);
  void addHeadings();
  void addCells();
  Pieces piecesOf(uint32_t cell);
  size_t spanEnd(size_t level, size_t start) const;
  size_t spanWidth(size_t start, size_t end) const;
  size_t widthWanted(size_t level, size_t start, size_t have, HeadingWidth headings) const;
  Block headingsOf(size_t level, size_t start, size_t end) const;
  Block headingsBeside(size_t level, size_t start, size_t end) const;

  const Grid& grid_;
  const CellTexts& texts_;
  Footnotes& footnotes_;
  std::vector<Column> columns_;
  size_t levels_ = 0;
  size_t first_ = 0;
};

}  // namespace workbench
