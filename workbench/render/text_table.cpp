#include "workbench/render/text_table.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "workbench/render/cell_texts.h"
#include "workbench/render/footnotes.h"
#include "workbench/render/row_labels.h"
#include "workbench/render/text_block.h"
#include "workbench/render/text_columns.h"
#include "workbench/results/grid.h"
#include "workbench/text/display_width.h"

namespace workbench {
namespace {

constexpr size_t kWidestLabel = 40;     // of a row's label where there is room; longer are broken
constexpr size_t kReadableLabel = 22;   // how far labels are broken rather than folded
constexpr size_t kNarrowestLabel = 14;  // how far they are broken at all
constexpr size_t kHangingIndent = 2;

/// How a table is laid out.
struct Layout {
  size_t folded = 0;       ///< outer levels of labels that head sections
  size_t firstColumn = 0;  ///< columns before this one stand in the headings of sections
  HeadingWidth headings = HeadingWidth::kComfortable;
  std::vector<size_t> labelLimits;  ///< of the levels that are not folded
};

class TextTable {
 public:
  TextTable(const Table& table, const RenderOptions& options)
      : width_(options.width),
        grid_(table),
        texts_(table, options),
        labels_(grid_),
        columns_(grid_, texts_, footnotes_) {}

  void write(Writer& out) {
    const std::optional<Layout> layout = findLayout();
    if (layout) {
      writeTable(*layout, out);
    } else {
      writeList(out);
    }
    for (size_t i = 0; i < footnotes_.texts().size(); ++i) {
      const std::string note = Footnotes::letters(i) + ". " + printable(footnotes_.texts()[i]);
      for (const std::string& line : wrapText(note, width_, kHangingIndent + 1))
        out << line << '\n';
    }
    out << '\n';
  }

 private:
  /// The first layout that fits, from the one that reads best; none when no table does.
  std::optional<Layout> findLayout() {
    const size_t most = labels_.levels() > 0 ? labels_.levels() - 1 : 0;
    for (const auto headings : {HeadingWidth::kComfortable, HeadingWidth::kTight}) {
      if (auto layout = fitted(0, 0, headings, kReadableLabel)) return layout;
    }
    for (const size_t narrowest : {kReadableLabel, kNarrowestLabel}) {
      for (size_t folded = 1; folded <= most; ++folded) {
        for (const auto headings : {HeadingWidth::kComfortable, HeadingWidth::kTight}) {
          if (auto layout = fitted(folded, 0, headings, narrowest)) return layout;
        }
        const size_t repeated = repeatedColumns(folded);
        if (repeated == 0) continue;
        for (const auto headings : {HeadingWidth::kComfortable, HeadingWidth::kTight}) {
          if (auto layout = fitted(folded, repeated, headings, narrowest)) return layout;
        }
      }
    }
    return fitted(0, 0, HeadingWidth::kTight, kNarrowestLabel);
  }

  /// The layout with these settings, labels broken as far as needed; none when they are too wide.
  std::optional<Layout> fitted(size_t folded, size_t firstColumn, HeadingWidth headings,
                               size_t narrowest) {
    columns_.layOut(firstColumn, headings);
    Layout layout{folded, firstColumn, headings, {}};
    size_t width = columns_.width();
    for (size_t level = folded; level < labels_.levels(); ++level) {
      layout.labelLimits.push_back(std::min(labels_.naturalWidth(level), kWidestLabel));
      width += layout.labelLimits.back() + kGap.size();
    }
    while (width > width_) {
      const auto widest = std::max_element(layout.labelLimits.begin(), layout.labelLimits.end());
      if (widest == layout.labelLimits.end() || *widest <= narrowest) return std::nullopt;
      --*widest;
      --width;
    }
    return layout;
  }

  bool startsSection(size_t row, size_t folded) const {
    return row == 0 || labels_.sharedLevels(row) < folded;
  }

  /// How many columns from the left read the same in all rows of every section. At least the last
  /// column stays, and what stands under one heading stays together. None when no section has two
  /// rows: then nothing repeats.
  size_t repeatedColumns(size_t folded) const {
    size_t count = columns_.count() > 0 ? columns_.count() - 1 : 0;
    bool anyRepeats = false;
    for (size_t row = 1; row < labels_.rowCount() && count > 0; ++row) {
      if (startsSection(row, folded)) continue;
      anyRepeats = true;
      size_t alike = 0;
      while (alike < count && columns_.readAlike(alike, row, row - 1)) ++alike;
      count = alike;
    }
    return anyRepeats && count > 0 ? columns_.groupStart(count) : 0;
  }

  void writeLines(const std::string& text, size_t indent, Writer& out) const {
    for (const std::string& line : wrapText(text, width_, indent)) out << line << '\n';
  }

  void writeTitle(Writer& out) const { writeLines(printable(tableHeading(grid_.table())), 0, out); }

  void writeTable(const Layout& layout, Writer& out) {
    columns_.layOut(layout.firstColumn, layout.headings);
    RowHeadings headings(labels_, layout.folded, layout.labelLimits);
    const size_t width = headings.width() + columns_.width();
    writeTitle(out);
    out << repeated(kHeavyRule, width) << '\n';
    Block block = headings.titles();
    putBeside(block, columns_.headings(), block.width == 0 ? "" : kGap);
    for (const std::string& line : block.lines) out << trimmedLine(line) << '\n';
    out << repeated(kRule, width) << '\n';
    for (size_t row = 0; row < labels_.rowCount(); ++row) {
      if (layout.folded > 0 && startsSection(row, layout.folded)) {
        if (row > 0) out << '\n';
        writeLines(sectionHeading(row, layout), kHangingIndent, out);
      } else if (headings.startsGroup(row)) {
        out << '\n';
      }
      const Lines lines = headings.nextLines(row);
      out << trimmedLine(lines[0] + columns_.cellsOf(row)) << '\n';
      for (size_t i = 1; i < lines.size(); ++i) out << trimmedLine(lines[i]) << '\n';
    }
    out << repeated(kHeavyRule, width) << '\n';
  }

  std::string sectionHeading(size_t row, const Layout& layout) const {
    std::string text = labels_.joined(row, layout.folded);
    std::string numbers;
    for (size_t column = 0; column < layout.firstColumn; ++column) {
      const std::string number = columns_.textOf(column, row);
      if (number.empty()) continue;
      numbers += (numbers.empty() ? "" : ", ") + columns_.shortNameOf(column) + ' ' + number;
    }
    return numbers.empty() ? text : text + " (" + numbers + ')';
  }

  /// Every row as a list of its numbers.
  void writeList(Writer& out) const {
    size_t nameWidth = 0, numberWidth = 0;
    for (size_t c = 0; c < columns_.count(); ++c) {
      nameWidth = std::max(nameWidth, widthOf(columns_.nameOf(c)));
      for (size_t row = 0; row < labels_.rowCount(); ++row) {
        numberWidth = std::max(numberWidth, widthOf(columns_.textOf(c, row)));
      }
    }
    const size_t used = 2 * kGap.size() + numberWidth;
    nameWidth = std::min(nameWidth, width_ > used ? width_ - used : 1);
    const std::string rule = repeated(kHeavyRule, std::min(width_, used + nameWidth));
    writeTitle(out);
    out << rule << '\n';
    for (size_t row = 0; row < labels_.rowCount(); ++row) {
      if (row > 0) out << '\n';
      writeLines(labels_.joined(row, labels_.levels()), kHangingIndent, out);
      for (size_t c = 0; c < columns_.count(); ++c) writeListItem(c, row, nameWidth, out);
    }
    out << rule << '\n';
  }

  void writeListItem(size_t column, size_t row, size_t nameWidth, Writer& out) const {
    const std::string number = columns_.textOf(column, row);
    if (number.empty()) return;
    const Lines names = wrapText(columns_.nameOf(column), nameWidth, kHangingIndent);
    for (size_t i = 0; i + 1 < names.size(); ++i) out << kGap << names[i] << '\n';
    out << kGap << placed(names.back(), nameWidth, Align::kLeft) << kGap << number << '\n';
  }

  const size_t width_;
  const Grid grid_;
  const CellTexts texts_;
  const RowLabels labels_;
  Footnotes footnotes_;
  TextColumns columns_;
};

}  // namespace

void writeTextTable(const Table& table, const RenderOptions& options, Writer& out) {
  TextTable(table, options).write(out);
}

}  // namespace workbench
