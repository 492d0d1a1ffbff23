#include <algorithm>
#include <array>
#include <deque>
#include <future>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "workbench/render/csv_estimates.h"
#include "workbench/render/csv_fields.h"
#include "workbench/render/csv_subject.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"
#include "workbench/results/result_rows.h"

namespace workbench {
namespace {

using Names = std::vector<std::string>;

constexpr std::array<std::string_view, 3> kColumnsBeforeSplits{"command", "design", "table"};

constexpr std::array<std::string_view, 20> kColumnsAfterSplits{
    "variable",       "success",     "variable2",  "success2",  "measurement",
    "group_variable", "group",       "method",     "successes", "trials",
    "proportion",     "test_value",  "difference", "std_error", "z",
    "p_one_sided",    "p_two_sided", "level",      "lower",     "upper"};

constexpr std::string_view kNote = "note";

std::string_view nameOf(ResultKind kind) {
  switch (kind) {
    case ResultKind::kStatistics:
      return "statistics";
    case ResultKind::kIntervals:
      return "intervals";
    case ResultKind::kTests:
      break;
  }
  return "tests";
}

template <size_t count>
bool contains(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The columns of the split variables. One whose name is taken, by the columns `added` to those of
/// every run too, gets `split_` in front.
Names splitColumns(const Names& variables, const std::vector<std::string_view>& added) {
  Names columns;
  for (const std::string& variable : variables) {
    std::string name = variable;
    while (contains(kColumnsBeforeSplits, name) || contains(kColumnsAfterSplits, name) ||
           name == kNote || std::find(added.begin(), added.end(), name) != added.end() ||
           std::find(columns.begin(), columns.end(), name) != columns.end()) {
      name.insert(0, "split_");
    }
    columns.push_back(std::move(name));
  }
  return columns;
}

/// The rows of one table.
class TableRows {
 public:
  /// `emptyColumns` is the number of columns before the notes that such rows never fill.
  TableRows(const Table& table, std::string start, const Names& splits, std::string grouping,
            size_t emptyColumns)
      : rows_(table, EmptyCategories::kAll),
        start_(std::move(start)),
        splits_(splits),
        emptyColumns_(emptyColumns),
        grouping_(std::move(grouping)) {
    start_ += ',';
    start_ += csvNameOf(rows_.kind().design);
    start_ += ',';
    start_ += nameOf(rows_.kind().kind);
    if (rows_.level()) level_ = csvNumber(*rows_.level());
    if (rows_.testValue()) testValue_ = csvNumber(*rows_.testValue());
  }

  /// Many rows are made in blocks, some at a time side by side, and written in their order.
  void write(Writer& out) const {
    const auto together = std::max<size_t>(1, std::thread::hardware_concurrency());
    std::deque<std::future<std::string>> blocks;
    size_t next = 0;
    do {
      const size_t last = std::min(rows_.count(), next + kRowsInBlock);
      const auto launch =
          rows_.count() <= kRowsInBlock ? std::launch::deferred : std::launch::async;
      blocks.push_back(std::async(launch, &TableRows::block, this, next, last));
      next = last;
      for (; !blocks.empty() && (blocks.size() > together || next == rows_.count());
           blocks.pop_front()) {
        out << blocks.front().get();
      }
    } while (next < rows_.count());
  }

 private:
  static constexpr size_t kRowsInBlock = 4096;

  std::string block(size_t first, size_t last) const {
    std::ostringstream text;
    Writer out(text);
    for (size_t row = first; row < last; ++row) writeRow(row, out);
    out.finish();
    return std::move(text).str();
  }

  void writeRow(size_t row, Writer& out) const {
    out << start_;
    for (size_t split = 0; split < splits_.size(); ++split) {
      out << ',' << csvText(splitText(row, split));
    }
    writeCsvSubject(rows_.subject(row), grouping_, out);
    for (const Quantity quantity : {Quantity::kSuccesses, Quantity::kTrials, Quantity::kProportion})
      writeNumber(row, quantity, out);
    const bool hasCells = rows_.hasCells(row);
    out << ',' << (hasCells ? testValue_ : "");
    for (const Quantity quantity : {Quantity::kDifference, Quantity::kStandardError, Quantity::kZ,
                                    Quantity::kOneSidedP, Quantity::kTwoSidedP}) {
      writeNumber(row, quantity, out);
    }
    out << ',' << (hasCells ? level_ : "");
    writeNumber(row, Quantity::kLower, out);
    writeNumber(row, Quantity::kUpper, out);
    for (size_t i = 0; i < emptyColumns_; ++i) out << ',';
    writeNotes(row, out);
    out << '\n';
  }

  std::string splitText(size_t row, size_t split) const {
    const ShownSplit& own = rows_.table().split();
    if (split < own.size()) return own[split].second;
    if (split >= rows_.splitDimensions().size()) return "";
    const LabelData* value = rows_.splitValue(row, split);
    return value == nullptr ? "" : value->text;
  }

  void writeNumber(size_t row, Quantity quantity, Writer& out) const {
    out << ',';
    writeCsvNumber(rows_.value(row, quantity), out);
  }

  void writeNotes(size_t row, Writer& out) const {
    std::string joined;
    for (const CellNoteText* note : rows_.notes(row)) {
      joined += (joined.empty() ? "" : "; ") + note->text;
    }
    out << ',' << csvText(joined);
  }

  const ResultRows rows_;
  std::string start_;
  const Names& splits_;
  size_t emptyColumns_;
  std::string grouping_;
  std::string level_;
  std::string testValue_;
};

/// The name of the grouping variable, which only the group statistics show.
std::string groupingOf(const DocumentProcedure& procedure) {
  for (const auto& table : procedure.tables) {
    for (const Dimension& dimension : table->dimensions()) {
      if (!dimension.isSplit && dimension.label().variables.size() == 1) {
        return dimension.label().variables.front();
      }
    }
  }
  return "";
}

}  // namespace

void renderCsv(const OutputDocument& document, const RenderOptions&, std::ostream& stream) {
  Names variables;
  for (const auto& procedure : document.procedures()) {
    if (variables.empty()) variables = procedure->splitVariables;
  }
  const std::vector<std::string_view> added = estimateColumns(document);
  const Names splits = splitColumns(variables, added);

  Writer out(stream);
  std::string_view separator;
  const auto writeName = [&](std::string_view name) {
    out << separator << csvText(name);
    separator = ",";
  };
  for (const std::string_view name : kColumnsBeforeSplits) writeName(name);
  for (const std::string& name : splits) writeName(name);
  for (const std::string_view name : kColumnsAfterSplits) writeName(name);
  for (const std::string_view name : added) writeName(name);
  writeName(kNote);
  out << '\n';

  size_t command = 0;
  for (const auto& procedure : document.procedures()) {
    const std::string number = std::to_string(++command);
    const std::string grouping = groupingOf(*procedure);
    for (const auto& table : procedure->tables) {
      if (tableKindOf(table->title().key)) {
        TableRows(*table, number, splits, grouping, added.size()).write(out);
      } else if (isEstimateTable(*table)) {
        writeEstimates(*table, *procedure, number, splits.size(), grouping, added, out);
      }
    }
  }
  out.finish();
}

}  // namespace workbench
