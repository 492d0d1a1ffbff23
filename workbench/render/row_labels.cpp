#include "workbench/render/row_labels.h"

#include <algorithm>

#include "workbench/render/footnotes.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kHangingIndent = 2;  // of a broken label, so that the next one is told from it
constexpr size_t kLargeGroup = 3;     // rows or lines of one outermost label

/// True for "= 1", "< 5" and the like, which read on from the name of their variable.
bool isRelation(std::string_view label) {
  return !label.empty() && std::string_view("=<>").find(label[0]) != std::string_view::npos;
}

}  // namespace

RowLabels::RowLabels(const Grid& grid) : rows_(grid.rows()) {
  for (size_t d = 0; d < rows_.dimensions().size(); ++d) {
    addDimension(grid.table().dimensions()[rows_.dimensions()[d]], rows_.depth(d));
  }
}

void RowLabels::addDimension(const Dimension& dimension, size_t depth) {
  const size_t first = titles_.size();
  titles_.push_back(printable(dimension.label().text));
  titles_.resize(first + depth);
  namesValues_.resize(titles_.size(), !dimension.label().variables.empty());
  for (size_t i = first; i < titles_.size(); ++i) widths_.push_back(widthOf(titles_[i]));
  std::vector<std::string>& labels = labels_.emplace_back();
  std::vector<int32_t>& parents = parents_.emplace_back();
  for (const DimensionNode& node : dimension.nodes()) {
    labels.push_back(shownCategory(printable(node.label.text)));
    parents.push_back(node.parent);
  }
  std::vector<size_t> level(labels.size(), first);
  for (size_t i = 1; i < labels.size(); ++i) {  // parents come before their children
    if (parents[i] > 0) level[i] = level[static_cast<size_t>(parents[i])] + 1;
    if (level[i] < widths_.size()) {
      widths_[level[i]] = std::max(widths_[level[i]], widthOf(labels[i]));
    }
  }
}

const std::string& RowLabels::title(size_t level, size_t first) const {
  while (level == first && level > 0 && titles_[level].empty()) first = --level;
  return titles_[level];
}

std::vector<const std::string*> RowLabels::labelsOf(size_t row) const {
  static const std::string kNone;
  std::vector<const std::string*> labels;
  for (size_t d = 0; d < labels_.size(); ++d) {
    const size_t first = labels.size();
    for (int32_t node = rows_.node(row, d); node > 0; node = parents_[d][static_cast<size_t>(node)])
      labels.push_back(&labels_[d][static_cast<size_t>(node)]);
    std::reverse(labels.begin() + static_cast<ptrdiff_t>(first), labels.end());
    labels.resize(first + rows_.depth(d), &kNone);
  }
  return labels;
}

size_t RowLabels::sharedLevels(size_t row) const {
  if (row == 0 || row >= rowCount()) return 0;
  const std::vector<const std::string*> labels = labelsOf(row);
  const std::vector<const std::string*> before = labelsOf(row - 1);
  size_t shared = 0;
  while (shared < labels.size() && labels[shared] == before[shared]) ++shared;
  return shared;
}

std::string RowLabels::joined(size_t row, size_t count) const {
  const std::vector<const std::string*> labels = labelsOf(row);
  std::string text;
  for (size_t level = 0; level < count; ++level) {
    const std::string& label = *labels[level];
    if (label.empty()) continue;
    if (!text.empty()) text += ", ";
    if (namesValues_[level]) text += titles_[level] + (isRelation(label) ? " " : " = ");
    text += label;
  }
  return text;
}

RowHeadings::RowHeadings(const RowLabels& labels, size_t first, const std::vector<size_t>& limits)
    : labels_(labels), first_(first), limits_(limits) {
  for (size_t i = 0; i < limits_.size(); ++i) {
    widths_.push_back(widestLine(wrapped(labels_.title(first_ + i, first_), i)));
  }
  const std::string* last = nullptr;
  for (size_t row = 0; row < labels_.rowCount(); ++row) {
    const std::vector<const std::string*> all = labels_.labelsOf(row);
    for (size_t i = 0; i < limits_.size(); ++i) {
      const std::string& label = *all[first_ + i];
      if (widthOf(label) <= widths_[i] || &label == last) continue;
      widths_[i] = std::max(widths_[i], widestLine(wrapped(label, i)));
      last = &label;
    }
  }
  lines_.resize(limits_.size());
  shownLines_.resize(limits_.size());
  hasLargeGroups_ = limits_.size() > 1 && findsLargeGroups();
}

Lines RowHeadings::wrapped(const std::string& label, size_t level) const {
  return wrapText(label, limits_[level], kHangingIndent);
}

size_t RowHeadings::width() const {
  size_t width = 0;
  for (const size_t w : widths_) width += w + kGap.size();
  return width;
}

Block RowHeadings::titles() const {
  Block block;
  for (size_t i = 0; i < limits_.size(); ++i) {
    const Lines lines = wrapText(labels_.title(first_ + i, first_), widths_[i]);
    putBeside(block, blockOf(lines, widths_[i], Align::kLeft), i == 0 ? "" : kGap);
  }
  return block;
}

/// Shared levels of those shown; never all, so that each row is headed by something.
size_t RowHeadings::shared(size_t row) const {
  const size_t all = labels_.sharedLevels(row);
  if (all < first_ || limits_.empty()) return 0;
  return std::min(all - first_, limits_.size() - 1);
}

Lines RowHeadings::nextLines(size_t row) {
  const std::vector<const std::string*> labels = labels_.labelsOf(row);
  for (size_t i = shared(row); i < limits_.size(); ++i) {
    lines_[i] = wrapped(*labels[first_ + i], i);
    shownLines_[i] = 0;
  }
  size_t height = 1;
  for (size_t i = shared(row + 1); i < limits_.size(); ++i) {
    const size_t count = lines_[i].size();
    height = std::max(height, count - std::min(count, shownLines_[i]));
  }
  Lines result(height);
  for (std::string& line : result) {
    for (size_t i = 0; i < limits_.size(); ++i) {
      const bool isShown = shownLines_[i] < lines_[i].size();
      line += placed(isShown ? lines_[i][shownLines_[i]++] : "", widths_[i], Align::kLeft);
      line += kGap;
    }
  }
  return result;
}

bool RowHeadings::startsGroup(size_t row) const {
  return hasLargeGroups_ && row > 0 && labels_.sharedLevels(row) <= first_;
}

/// True when any group has many rows, or when groups take many lines on average.
bool RowHeadings::findsLargeGroups() {
  size_t run = 0, groups = 0, lines = 0;
  for (size_t row = 0; row < labels_.rowCount(); ++row) {
    const bool isFirst = row == 0 || labels_.sharedLevels(row) <= first_;
    run = isFirst ? 1 : run + 1;
    if (run >= kLargeGroup) return true;
    groups += isFirst ? 1 : 0;
    lines += nextLines(row).size();
  }
  return lines >= kLargeGroup * std::max<size_t>(groups, 1);
}

}  // namespace workbench
