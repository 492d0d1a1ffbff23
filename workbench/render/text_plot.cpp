#include "workbench/render/text_plot.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "workbench/dataset/value_text.h"
#include "workbench/render/row_labels.h"
#include "workbench/render/text_block.h"
#include "workbench/results/interval_scale.h"

namespace workbench {
namespace {

constexpr size_t kWidestLabel = 36;
constexpr size_t kWidestBar = 61;
constexpr size_t kColumnsForTick = 12;
constexpr size_t kHangingIndent = 2;

constexpr std::string_view kLine = "─";
constexpr std::string_view kLeftEnd = "├";
constexpr std::string_view kRightEnd = "┤";
constexpr std::string_view kPoint = "●";
constexpr std::string_view kReference = "┊";
constexpr std::string_view kReferenceInBar = "┼";
constexpr std::string_view kTick = "┴";

class TextPlot {
 public:
  TextPlot(const ResultRows& rows, std::optional<double> reference, const RenderOptions& options)
      : rows_(rows), labels_(rows.grid()), options_(options), given_(reference) {
    folded_ = labels_.levels() > 0 ? labels_.levels() - 1 : 0;
    if (labels_.levels() > 0) {
      labelWidth_ = std::min({labels_.naturalWidth(folded_), kWidestLabel, options.width / 2});
    }
    const size_t used = 2 * kGap.size() + labelWidth_;
    barWidth_ = std::min(kWidestBar, options.width - used);
    scale_ = scaleOf(rows, rows.count(), reference, barWidth_ / kColumnsForTick + 1);
    if (scale_ && reference) reference_ = placeOf(*reference);
  }

  void write(Writer& out) {
    if (!scale_) return;
    std::string heading = shortestNumber(rows_.level().value_or(0)) + "% confidence intervals";
    if (given_) {
      heading += rows_.kind().design == Design::kOneSample ? "; the broken line is the test value "
                                                           : "; the broken line is ";
      heading += shortestNumber(*given_);
    }
    for (const std::string& line : wrapText(heading, options_.width)) out << line << '\n';
    for (size_t row = 0; row < rows_.count(); ++row) {
      if (rows_.hasCells(row)) writeRow(row, out);
    }
    writeAxis(out);
  }

 private:
  size_t placeOf(double value) const {
    return static_cast<size_t>(
        std::lround(scale_->place(value) * static_cast<double>(barWidth_ - 1)));
  }

  void writeRow(size_t row, Writer& out) {
    if (folded_ > 0 && (row == 0 || labels_.sharedLevels(row) < folded_)) {
      for (const std::string& line :
           wrapText(labels_.joined(row, folded_), options_.width, kHangingIndent)) {
        out << line << '\n';
      }
    }
    const std::string label = folded_ < labels_.levels() ? *labels_.labelsOf(row)[folded_] : "";
    const Lines lines = wrapText(label, labelWidth_, kHangingIndent);
    for (size_t i = 0; i < lines.size(); ++i) {
      const std::string bar = i == 0 ? barOf(drawnInterval(rows_, row)) : "";
      out << trimmedLine(std::string(kGap) + placed(lines[i], labelWidth_, Align::kLeft) +
                         std::string(kGap) + bar)
          << '\n';
    }
  }

  std::string barOf(const DrawnInterval& interval) const {
    if (!interval.isWhole()) return "not available";
    std::vector<std::string_view> places(barWidth_, " ");
    const size_t lower = placeOf(interval.lower), upper = placeOf(interval.upper);
    for (size_t at = lower; at <= upper && at < barWidth_; ++at) places[at] = kLine;
    if (reference_) places[*reference_] = places[*reference_] == " " ? kReference : kReferenceInBar;
    places[lower] = kLeftEnd;
    places[upper] = kRightEnd;
    places[placeOf(interval.estimate)] = kPoint;
    std::string text;
    for (const std::string_view place : places) text += place;
    return text;
  }

  /// A line with ticks, and their numbers centred below as far as they stay within the width.
  void writeAxis(Writer& out) const {
    std::vector<std::string_view> line(barWidth_, kLine);
    std::string numbers(options_.width, ' ');
    const size_t start = 2 * kGap.size() + labelWidth_;
    for (size_t i = 0; i < scale_->tickCount(); ++i) {
      const size_t place = std::min(placeOf(scale_->tick(i)), barWidth_ - 1);
      line[place] = kTick;
      const std::string text = scale_->tickText(i, options_.percent);
      const size_t wanted = start + place - std::min(text.size() / 2, start + place);
      numbers.replace(std::min(wanted, options_.width - text.size()), text.size(), text);
    }
    out << std::string(start, ' ');
    for (const std::string_view place : line) out << place;
    out << '\n' << trimmedLine(numbers) << "\n\n";
  }

  const ResultRows& rows_;
  const RowLabels labels_;
  const RenderOptions& options_;
  const std::optional<double> given_;
  size_t folded_ = 0;  // levels of labels that head the lines of their rows
  size_t labelWidth_ = 0;
  size_t barWidth_ = 0;
  std::optional<IntervalScale> scale_;
  std::optional<size_t> reference_;
};

}  // namespace

void writeTextPlot(const Table& table, const DocumentProcedure& procedure,
                   const RenderOptions& options, Writer& out) {
  const auto kind = tableKindOf(table.title().key);
  if (!kind || kind->kind != ResultKind::kIntervals) return;
  const ResultRows rows(table, EmptyCategories::kReadable);
  TextPlot(rows, referenceOf(rows, procedure), options).write(out);
}

}  // namespace workbench
