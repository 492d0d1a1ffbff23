#include "workbench/dataset/case_store.h"

#include <fmt/format.h>

#include <algorithm>

namespace workbench {
namespace {

constexpr int64_t kSmallFile = int64_t{1} << 20;
constexpr int64_t kSampleRows = 20'480;
constexpr int64_t kSampleValues = int64_t{1} << 18;
constexpr int64_t kMostCombinations = 2'000'000;
constexpr double kExactLimit = 9'007'199'254'740'992.0;  // 2^53: beyond it sums are rounded

class MemoryStore final : public CaseStore {
 public:
  MemoryStore(CaseTable table, std::vector<int32_t> widths, int64_t cases)
      : table_(std::make_shared<const CaseTable>(std::move(table))),
        widths_(std::move(widths)),
        cases_(cases) {}

  int32_t width(size_t column) const override { return widths_[column]; }

  std::unique_ptr<CaseFeed> openFeed(ColumnViews views, std::shared_ptr<SplitCursor> cursor,
                                     FeedObserver& observer) override {
    return makeTableFeed(table_, std::move(views), std::move(cursor), kChunkCases, &observer,
                         cases_);
  }

 private:
  std::shared_ptr<const CaseTable> table_;
  std::vector<int32_t> widths_;
  int64_t cases_;
};

std::unique_ptr<CaseStore> keep(CaseTable table, const CasePlan& plan, int64_t cases) {
  std::vector<int32_t> widths;
  for (size_t i = 0; i < plan.columns.size(); ++i) widths.push_back(table.width(i));
  table.finish(plan.split);
  return std::make_unique<MemoryStore>(std::move(table), std::move(widths), cases);
}

std::vector<size_t> sourceColumns(const CasePlan& plan) {
  std::vector<size_t> columns;
  for (const ReadColumn& column : plan.columns) {
    columns.push_back(static_cast<size_t>(column.variable));
  }
  if (plan.weight >= 0) columns.push_back(static_cast<size_t>(plan.weight));
  return columns;
}

std::string relationOf(const CasePlan& plan) { return plan.source->relation(sourceColumns(plan)); }

/// The weight as a number, whatever the variable is.
std::string weightValue(const CasePlan& plan) {
  if (plan.weightEntry->isString()) return "CAST(NULL AS DOUBLE)";
  return plan.source->value(static_cast<size_t>(plan.weight));
}

/// What the procedure makes of a weight, null for weights that drop their case.
std::string roundedWeight(const CasePlan& plan) {
  const std::string raw = weightValue(plan);
  std::string counts = fmt::format("({0}) >= 0.5 AND NOT isnan({0})", raw);
  for (const double missing : plan.weightEntry->missingNumbers) {
    counts += fmt::format(" AND ({}) <> CAST('{}' AS DOUBLE)", raw, missing);
  }
  return fmt::format("CASE WHEN {} THEN floor(({}) + 0.5) END", counts, raw);
}

/// The values and the rounded weight, for counting.
std::string combinationOf(const CasePlan& plan) {
  std::string list;
  for (size_t i = 0; i < plan.columns.size(); ++i) {
    list += fmt::format("{}{} AS c{}", i == 0 ? "" : ", ",
                        plan.source->value(static_cast<size_t>(plan.columns[i].variable)), i);
  }
  if (plan.weight >= 0) {
    list += fmt::format("{}{} AS w", list.empty() ? "" : ", ", roundedWeight(plan));
  }
  return list;
}

/// Whether most of the cases to come are expected to repeat a combination that the beginning of the
/// data holds: the share of combinations seen once estimates the share of new ones among further
/// cases (Good 1953, Biometrika 40:237-264).
bool combinationsRepeat(const CasePlan& plan) {
  const int64_t bytes = plan.source->bytes();
  if (bytes >= 0 && bytes < kSmallFile) return false;
  if (plan.columns.empty() && plan.weight < 0) return false;
  const auto columns = static_cast<int64_t>(plan.columns.size() + 1);
  const int64_t sample =
      std::clamp<int64_t>(kSampleValues / columns, kSampleRows / 10, kSampleRows);
  std::string names;
  for (size_t i = 0; i < plan.columns.size(); ++i) names += fmt::format("c{}, ", i);
  if (plan.weight >= 0) names += "w, ";
  names.resize(names.size() - 2);
  Query query(
      plan.source->database(),
      fmt::format("SELECT CAST(coalesce(sum(n), 0) AS BIGINT), count(*) FILTER (WHERE n = 1) FROM "
                  "(SELECT count(*) AS n FROM (SELECT {} FROM {} LIMIT {}) "
                  "GROUP BY hash({}))",
                  combinationOf(plan), relationOf(plan), sample, names));
  const Chunk chunk = query.fetch();
  const int64_t rows = chunk.data<int64_t>(0)[0];
  const int64_t once = chunk.data<int64_t>(1)[0];
  // A sample that holds all the data leaves nothing to gain.
  return rows == sample && once * 10 < rows;
}

std::unique_ptr<CaseStore> readCombinations(const CasePlan& plan) {
  const bool weighted = plan.weight >= 0;
  const std::string combination = combinationOf(plan);
  if (combination.empty()) return nullptr;
  Query query(plan.source->database(), fmt::format("SELECT {}, count(*) FROM {} GROUP BY ALL",
                                                   combination, relationOf(plan)));
  CaseReader reader(plan.columns,
                    weighted ? CaseReader::Weights::kRounded : CaseReader::Weights::kCounts,
                    plan.weightEntry, plan.source->label());
  CaseTable table = reader.newTable();
  while (const Chunk chunk = query.fetch()) {
    reader.add(chunk, table);
    if (table.caseCount() > kMostCombinations || table.bytes() > plan.memoryLimit) return nullptr;
  }
  // Sums of more could depend on their order.
  if (!(reader.totalWeight() < kExactLimit)) return nullptr;
  return keep(std::move(table), plan, reader.casesRead());
}

/// Null when the cases take too much memory.
std::unique_ptr<CaseStore> readIntoMemory(const CasePlan& plan) {
  const int64_t expected = plan.source->estimatedRows();
  const size_t words = plan.columns.size() + (plan.weight >= 0 ? 1 : 0);
  const double expectedBytes = 8.0 * static_cast<double>(expected) * static_cast<double>(words);
  // A rough number is no reason to give up what may just fit.
  if (expected > 0 && expectedBytes > 1.5 * static_cast<double>(plan.memoryLimit)) return nullptr;
  CaseReader reader(plan.columns,
                    plan.weight >= 0 ? CaseReader::Weights::kRaw : CaseReader::Weights::kNone,
                    plan.weightEntry, plan.source->label());
  CaseTable table = reader.newTable();
  if (expected > 0 && expectedBytes < static_cast<double>(plan.memoryLimit)) {
    table.reserve(static_cast<size_t>(static_cast<double>(expected) * 1.02));
  }
  Query query(plan.source->database(),
              fmt::format("SELECT {} FROM {}", selectOf(plan), relationOf(plan)));
  while (const Chunk chunk = query.fetch()) {
    reader.add(chunk, table);
    if (table.bytes() > plan.memoryLimit) return nullptr;
  }
  return keep(std::move(table), plan, reader.casesRead());
}

}  // namespace

std::string selectOf(const CasePlan& plan) {
  std::string list;
  for (size_t i = 0; i < plan.columns.size(); ++i) {
    list += fmt::format("{}{} AS c{}", i == 0 ? "" : ", ",
                        plan.source->value(static_cast<size_t>(plan.columns[i].variable)), i);
  }
  if (plan.weight >= 0) {
    list += fmt::format("{}{} AS w", list.empty() ? "" : ", ", weightValue(plan));
  }
  // Cases count even when nothing of them is looked at.
  return list.empty() ? "1 AS w" : list;
}

std::unique_ptr<CaseStore> readCases(const CasePlan& plan) {
  if (plan.collapse == CollapseMode::kAlways ||
      (plan.collapse == CollapseMode::kAuto && combinationsRepeat(plan))) {
    if (auto store = readCombinations(plan)) return store;
  }
  if (auto store = readIntoMemory(plan)) return store;
  return makeEngineStore(plan);
}

}  // namespace workbench
