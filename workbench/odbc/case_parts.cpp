#include "workbench/odbc/case_parts.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace workbench {
namespace {

/// What a driver keeps beside the values, at the most.
constexpr double kRowBytes = 64;
constexpr double kValueBytes = 24;

std::string shown(const Dialect& dialect, const SelectedColumn& selected) {
  return dialect.shown(*selected.column, selected.asText);
}

/// The number of a case's part. The factors keep cases apart that have the same values in other
/// columns.
std::string partOf(const Dialect& dialect, const Selection& selection) {
  std::vector<std::string> terms{"0"};
  for (size_t i = 0; i < selection.columns.size(); ++i) {
    const std::string hash = dialect.hash(shown(dialect, selection.columns[i]));
    terms.push_back(fmt::format("{} * COALESCE({}, 0)", 2 * i + 1, hash));
  }
  return fmt::format("MOD({}, {})", fmt::join(terms, " + "), kCaseParts);
}

}  // namespace

std::string partSizesStatement(const Dialect& dialect, const Selection& selection,
                               const std::string& relation) {
  std::vector<std::string> lengths{"0"};
  for (const SelectedColumn& selected : selection.columns) {
    lengths.push_back(fmt::format("COALESCE(OCTET_LENGTH({}), 0)", shown(dialect, selected)));
  }
  const std::string part = partOf(dialect, selection);
  return fmt::format("SELECT {0}, COUNT(*), SUM({1}) FROM {2} GROUP BY {0}", part,
                     fmt::join(lengths, " + "), relation);
}

std::vector<PartRange> partRanges(const std::vector<PartSize>& sizes, size_t columns,
                                  double memory) {
  std::vector<PartSize> ordered = sizes;
  std::sort(ordered.begin(), ordered.end(),
            [](const PartSize& a, const PartSize& b) { return a.part < b.part; });
  const double rowBytes = kRowBytes + kValueBytes * static_cast<double>(columns);
  std::vector<PartRange> ranges;
  double room = 0;  // for more parts in the last range
  for (const PartSize& size : ordered) {
    const double needed = static_cast<double>(size.cases) * rowBytes + size.bytes;
    if (needed > memory) {
      ranges.push_back({size.part, size.part, size.cases, true});
      room = 0;
    } else if (needed > room) {
      ranges.push_back({size.part, size.part, size.cases, false});
      room = memory - needed;
    } else {
      ranges.back().last = size.part;
      ranges.back().cases += size.cases;
      room -= needed;
    }
  }
  return ranges;
}

std::string partStatement(const Dialect& dialect, const Selection& selection,
                          const std::string& relation, const PartRange& parts) {
  const std::string condition =
      fmt::format("{} BETWEEN {} AND {}", partOf(dialect, selection), parts.first, parts.last);
  if (!parts.counted) {
    return fmt::format("{} WHERE {}", casesStatement(dialect, selection, relation), condition);
  }
  std::vector<std::string> values;
  std::vector<std::string> groups;
  for (const SelectedColumn& selected : selection.columns) {
    values.push_back(dialect.anyOf(*selected.column, shown(dialect, selected)));
    groups.push_back(dialect.grouped(*selected.column));
  }
  if (values.empty()) values = groups = {"1"};
  return fmt::format("SELECT {}, COUNT(*) FROM {} WHERE {} GROUP BY {}", fmt::join(values, ", "),
                     relation, condition, fmt::join(groups, ", "));
}

}  // namespace workbench
