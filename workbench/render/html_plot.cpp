#include "workbench/render/html_plot.h"

#include <algorithm>
#include <string>

#include "workbench/dataset/value_text.h"
#include "workbench/render/html_text.h"
#include "workbench/render/row_labels.h"
#include "workbench/render/wrap.h"
#include "workbench/results/interval_scale.h"
#include "workbench/results/number_text.h"

namespace workbench {
namespace {

constexpr size_t kMostDrawn = 200;
constexpr size_t kMostTicks = 6;     // as many as stand side by side on a telephone
constexpr size_t kWidestLabel = 44;  // characters of a line, likewise
constexpr double kMargin = 5.0;      // percent of the width beside the axis, for its numbers
constexpr int kLineHeight = 18;      // pixels from a line of text to the next
constexpr int kTextRise = 13;        // from the top of a line to its base
constexpr int kBarHeight = 16;
constexpr int kBarCap = 5;  // half the height of a bar's ends
constexpr int kAxisHeight = 30;

std::string percentOf(double share) { return fixedText(share, 2) + '%'; }

/// Draws from top to bottom; what stands at which height is known only when all is drawn.
class HtmlPlot {
 public:
  HtmlPlot(const ResultRows& rows, const IntervalScale& scale, std::optional<double> reference,
           bool percent)
      : rows_(rows), labels_(rows.grid()), scale_(scale), reference_(reference), percent_(percent) {
    folded_ = labels_.levels() > 0 ? labels_.levels() - 1 : 0;
  }

  void draw(size_t count) {
    for (size_t row = 0; row < count; ++row) {
      if (rows_.hasCells(row)) drawRow(row);
    }
    const int bottom = height_ + 4;
    drawAxis(bottom);
    height_ = bottom + kAxisHeight;
  }

  int height() const { return height_; }
  const std::string& drawing() const { return drawing_; }
  const std::string& behind() const { return behind_; }

 private:
  std::string placeOf(double value) const {
    return percentOf(kMargin + (100 - 2 * kMargin) * scale_.place(value));
  }

  void drawText(const std::string& text, const char* kind) {
    for (const std::string& line : wrapText(text, kWidestLabel)) {
      drawing_ += "<text class=\"";
      drawing_ += kind;
      drawing_ += "\" x=\"0\" y=\"" + std::to_string(height_ + kTextRise) + "\">" +
                  htmlEscaped(line) + "</text>\n";
      height_ += kLineHeight;
    }
  }

  void drawLine(const std::string& x1, int y1, const std::string& x2, int y2) {
    drawing_ += "<line x1=\"" + x1 + "\" y1=\"" + std::to_string(y1) + "\" x2=\"" + x2 +
                "\" y2=\"" + std::to_string(y2) + "\"/>";
  }

  void drawRow(size_t row) {
    if (folded_ > 0 && (row == 0 || labels_.sharedLevels(row) < folded_)) {
      if (height_ > 0) height_ += 6;
      drawText(labels_.joined(row, folded_), "group");
    }
    if (folded_ < labels_.levels()) drawText(*labels_.labelsOf(row)[folded_], "row");
    const DrawnInterval interval = drawnInterval(rows_, row);
    if (!interval.isWhole()) {
      drawText("not available", "none");
      return;
    }
    const int middle = height_ + kBarHeight / 2 - 2;
    const std::string lower = placeOf(interval.lower), upper = placeOf(interval.upper);
    drawLine(lower, middle, upper, middle);
    for (const std::string& end : {lower, upper}) {
      drawLine(end, middle - kBarCap, end, middle + kBarCap);
    }
    drawing_ += "<circle cx=\"" + placeOf(interval.estimate) + "\" cy=\"" + std::to_string(middle) +
                "\" r=\"4\"/>\n";
    height_ += kBarHeight;
  }

  void drawAxis(int at) {
    drawLine(placeOf(scale_.low), at, placeOf(scale_.high), at);
    for (size_t i = 0; i < scale_.tickCount(); ++i) {
      const std::string place = placeOf(std::min(scale_.tick(i), scale_.high));
      drawLine(place, at, place, at + 5);
      drawing_ += "<text class=\"tick\" x=\"" + place + "\" y=\"" + std::to_string(at + 20) +
                  "\">" + scale_.tickText(i, percent_) + "</text>\n";
    }
    if (!reference_) return;
    const std::string place = placeOf(*reference_);
    behind_ = "<line class=\"reference\" x1=\"" + place + "\" y1=\"0\" x2=\"" + place + "\" y2=\"" +
              std::to_string(at) + "\"/>\n";
  }

  const ResultRows& rows_;
  const RowLabels labels_;
  const IntervalScale& scale_;
  const std::optional<double> reference_;
  const bool percent_;
  size_t folded_ = 0;  // levels of labels that head the labels of rows
  int height_ = 0;
  std::string drawing_;
  std::string behind_;  // what the intervals are drawn over
};

std::string describedRange(const ResultRows& rows, const IntervalScale& scale,
                           std::optional<double> reference, bool percent) {
  std::string text = "Points with bars on one axis from " + scale.tickText(0, percent) + " to " +
                     scale.tickText(scale.tickCount() - 1, percent);
  if (reference) {
    text += rows.kind().design == Design::kOneSample ? "; a broken line at the test value "
                                                     : "; a broken line at ";
    text += shortestNumber(*reference);
  }
  return text + ". The table above has the numbers.";
}

}  // namespace

void writeHtmlPlot(const Table& table, const DocumentProcedure& procedure,
                   const RenderOptions& options, const std::string& id, Writer& out) {
  const auto kind = tableKindOf(table.title().key);
  if (!kind || kind->kind != ResultKind::kIntervals) return;
  const ResultRows rows(table, EmptyCategories::kReadable);
  const size_t count = std::min(rows.count(), kMostDrawn);
  const std::optional<double> reference = referenceOf(rows, procedure);
  const auto scale = scaleOf(rows, count, reference, kMostTicks);
  if (!scale) return;
  HtmlPlot plot(rows, *scale, reference, options.percent);
  plot.draw(count);

  const std::string level =
      rows.level() ? shortestNumber(*rows.level()) + "% confidence intervals" : "Intervals";
  out << "<figure><svg role=\"img\" aria-labelledby=\"" << id << "t " << id
      << "d\" width=\"100%\" height=\"" << std::to_string(plot.height()) << "\">\n<title id=\""
      << id << "t\">" << htmlText(table.title().text) << "</title><desc id=\"" << id << "d\">"
      << htmlText(describedRange(rows, *scale, reference, options.percent)) << "</desc>\n"
      << plot.behind() << plot.drawing() << "</svg>\n<figcaption>" << htmlText(level);
  if (reference) {
    out << (rows.kind().design == Design::kOneSample ? "; the broken line is the test value "
                                                     : "; the broken line is ")
        << htmlText(shortestNumber(*reference));
  }
  if (count < rows.count()) {
    out << ". The first " << std::to_string(count) << " of " << std::to_string(rows.count())
        << " intervals are drawn; the table has them all";
  }
  out << ".</figcaption></figure>\n";
}

}  // namespace workbench
