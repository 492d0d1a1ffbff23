#include "workbench/render/text_columns.h"

#include <algorithm>

#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kWidestHeading = 12;  // of a column's heading, as far as its words allow
constexpr size_t kWidestGroupHeading = 16;
constexpr size_t kWidestWord = 30;
constexpr size_t kWidestWordTight = 12;

}  // namespace

TextColumns::TextColumns(const Grid& grid, const CellTexts& texts, Footnotes& footnotes)
    : grid_(grid), texts_(texts), footnotes_(footnotes), columns_(grid.columns().placeCount()) {
  addHeadings();
  addCells();
}

std::vector<std::string> TextColumns::pathOf(size_t place) {
  const GridAxis& axis = grid_.columns();
  std::vector<std::string> path;
  for (size_t d = 0; d < axis.dimensions().size(); ++d) {
    for (const std::string_view label : axis.path(place, d)) {
      path.push_back(shownCategory(printable(label)));
    }
    const int32_t node = axis.node(place, d);
    if (node < 0) continue;
    const Dimension& dimension = grid_.table().dimensions()[axis.dimensions()[d]];
    for (const LabelData& note : dimension.footnotes(node)) {
      path.back() += Footnotes::superscript(footnotes_.numberOf(note.text));
    }
  }
  if (path.empty()) path.emplace_back();
  return path;
}

void TextColumns::addHeadings() {
  for (size_t c = 0; c < columns_.size(); ++c) {
    columns_[c].path = pathOf(c);
    levels_ = std::max(levels_, columns_[c].path.size());
  }
  for (Column& column : columns_) {
    column.path.insert(column.path.begin(), levels_ - column.path.size(), "");
  }
}

TextColumns::Pieces TextColumns::cutAtPoint(const std::string& text) {
  const bool isWord = !text.empty() && text.find_first_of(".0123456789") == std::string::npos;
  const size_t point = isWord ? 0 : std::min(text.find_first_of(".%"), text.size());
  return {text.substr(0, point), text.substr(point), isWord};
}

TextColumns::Pieces TextColumns::piecesOf(uint32_t cell) {
  if (cell == Grid::kNoCell) return {};
  Pieces pieces = cutAtPoint(texts_(cell));
  const int32_t note = grid_.table().cell(cell).note;
  if (note >= 0) {
    const std::string& text = grid_.table().notes()[static_cast<size_t>(note)].text;
    pieces.rest += Footnotes::superscript(footnotes_.numberOf(text));
  }
  return pieces;
}

void TextColumns::addCells() {
  const size_t rows = grid_.rows().placeCount();
  for (Column& column : columns_) column.cells.reserve(rows);
  for (size_t row = 0; row < rows; ++row) {  // row by row: footnotes are numbered in that order
    for (size_t c = 0; c < columns_.size(); ++c) {
      Column& column = columns_[c];
      column.cells.push_back(piecesOf(grid_.cell(row, c)));
      const Pieces& pieces = column.cells.back();
      column.wholeWidth = std::max(column.wholeWidth, pieces.whole.size());
      size_t& width = pieces.isWord ? column.cellWidth : column.restWidth;
      width = std::max(width, widthOf(pieces.rest));
    }
  }
  for (Column& column : columns_) {
    column.cellWidth = std::max(column.cellWidth, column.wholeWidth + column.restWidth);
  }
}

/// The end of the columns that stand under the same heading at a level.
size_t TextColumns::spanEnd(size_t level, size_t start) const {
  const auto& path = columns_[start].path;
  size_t end = start + 1;
  if (level + 1 == levels_ || path[level].empty()) return end;
  const auto stop = path.begin() + static_cast<ptrdiff_t>(level) + 1;
  while (end < columns_.size() && std::equal(path.begin(), stop, columns_[end].path.begin())) ++end;
  return end;
}

size_t TextColumns::spanWidth(size_t start, size_t end) const {
  size_t width = kGap.size() * (end - start - (end > start ? 1 : 0));
  for (size_t c = start; c < end; ++c) width += columns_[c].width;
  return width;
}

size_t TextColumns::widthWanted(size_t level, size_t start, size_t have,
                                HeadingWidth headings) const {
  const std::string& heading = columns_[start].path[level];
  const bool isTight = headings == HeadingWidth::kTight;
  const size_t comfort = level + 1 == levels_ ? kWidestHeading : kWidestGroupHeading;
  const size_t widest = std::max({have, isTight ? 0 : comfort, widestWord(heading)});
  const size_t limit = std::max(have, isTight ? kWidestWordTight : kWidestWord);
  return widestLine(wrapText(heading, std::min(widest, limit)));
}

/// Gives every heading the room that its words need, from the leaves up.
void TextColumns::layOut(size_t first, HeadingWidth headings) {
  first_ = first;
  for (Column& column : columns_) column.width = column.cellWidth;
  for (size_t level = levels_; level-- > 0;) {
    for (size_t start = first_; start < columns_.size();) {
      const size_t end = spanEnd(level, start);
      size_t have = spanWidth(start, end);
      const size_t wanted = widthWanted(level, start, have, headings);
      for (size_t c = start; have < wanted; c = c + 1 < end ? c + 1 : start) {
        ++columns_[c].width;
        ++have;
      }
      start = end;
    }
  }
}

/// The headings of some columns from a level down: a heading of its own stands over a rule.
Block TextColumns::headingsOf(size_t level, size_t start, size_t end) const {
  const std::string& text = columns_[start].path[level];
  const size_t width = spanWidth(start, end);
  if (level + 1 == levels_) return blockOf(wrapText(text, width), width, Align::kRight);
  Block below = headingsBeside(level + 1, start, end);
  if (text.empty()) return below;
  Block block = blockOf(wrapText(text, width), width, Align::kCentre);
  block.lines.push_back(repeated(kRule, width));
  block.lines.insert(block.lines.end(), below.lines.begin(), below.lines.end());
  return block;
}

Block TextColumns::headingsBeside(size_t level, size_t start, size_t end) const {
  Block block;
  for (size_t at = start; at < end;) {
    const size_t next = std::min(spanEnd(level, at), end);
    putBeside(block, headingsOf(level, at, next), at == start ? "" : kGap);
    at = next;
  }
  return block;
}

Block TextColumns::headings() const { return headingsBeside(0, first_, columns_.size()); }

std::string TextColumns::cellsOf(size_t row) const {
  std::string line;
  for (size_t c = first_; c < columns_.size(); ++c) {
    const Column& column = columns_[c];
    const Pieces& cell = column.cells[row];
    if (cell.isWord) {
      line += placed(cell.rest, column.width, Align::kRight);
    } else {
      line.append(column.width - column.wholeWidth - column.restWidth, ' ');
      line += placed(cell.whole, column.wholeWidth, Align::kRight);
      line += placed(cell.rest, column.restWidth, Align::kLeft);
    }
    line += kGap;
  }
  return line;
}

size_t TextColumns::groupStart(size_t column) const {
  const std::string& heading = columns_[column].path.front();
  while (!heading.empty() && column > 0 && columns_[column - 1].path.front() == heading) --column;
  return column;
}

bool TextColumns::readAlike(size_t column, size_t row, size_t other) const {
  const Pieces& a = columns_[column].cells[row];
  const Pieces& b = columns_[column].cells[other];
  return a.whole == b.whole && a.rest == b.rest;
}

std::string TextColumns::nameOf(size_t column) const {
  std::string name;
  for (const std::string& heading : columns_[column].path) {
    if (heading.empty()) continue;
    if (!name.empty()) name += ": ";
    name += heading;
  }
  return name;
}

std::string TextColumns::textOf(size_t column, size_t row) const {
  const Pieces& pieces = columns_[column].cells[row];
  return pieces.whole + pieces.rest;
}

}  // namespace workbench
