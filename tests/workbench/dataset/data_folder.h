/// Files that a test writes, and what a data set makes of them.
#pragma once

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "workbench/dataset/source_dataset.h"
#include "workbench/dataset/value_text.h"
#include "workbench/engine/database.h"
#include "workbench/engine/temp_folder.h"

namespace workbench::testing {

/// A folder that goes with the test.
class DataFolder {
 public:
  std::string path(const std::string& name) const { return folder_.path() + "/" + name; }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
  }
  /// Has the engine write a file, in SQL where FILE stands for its path.
  std::string make(const std::string& name, std::string sql) const {
    Database database("", {});
    sql.replace(sql.find("FILE"), 4, quotedText(path(name)));
    database.execute(sql);
    return path(name);
  }
  std::string makeDatabase(const std::string& name, const std::string& sql) const {
    Database database(path(name), {});
    database.execute(sql);
    return "duckdb:" + path(name);
  }

 private:
  TempFolder folder_;
};

inline DataOptions dataOptions(const std::string& data) {
  DataOptions options;
  options.data = data;
  options.collapse = CollapseMode::kNever;  // so that the cases come in file order
  return options;
}

inline std::vector<VarIndex> allVariables(const ActiveDataset& dataset) {
  std::vector<VarIndex> all;
  for (VarIndex i = 0; i < dataset.variableCount(); ++i) {
    if (i != dataset.weightVariable()) all.push_back(i);
  }
  return all;
}

/// Why the data cannot be opened, or not be read; empty when they can.
inline std::string refusal(const DataOptions& options) {
  try {
    const auto dataset = openDataset(options);
    dataset->beginCommand(allVariables(*dataset));
    dataset->openFeed();
    return dataset->failure();
  } catch (const DataError& error) {
    return error.what();
  }
}
inline std::string refusal(const std::string& data) { return refusal(dataOptions(data)); }

inline std::string splitText(const ActiveDataset& dataset) {
  std::string text;
  for (const SplitValue& value : dataset.currentSplit()) {
    if (!text.empty()) text += ",";
    const auto* number = std::get_if<double>(&value);
    text += number != nullptr ? shortestNumber(*number) : std::get<std::string>(value);
  }
  return text;
}

/// One line per case: the values separated by |, strings at their full width, then the weight. A
/// group's end is a line with its values. The last line is the failure, if any.
inline std::vector<std::string> casesOf(ActiveDataset& dataset,
                                        const std::vector<VarIndex>& variables) {
  std::vector<std::string> lines;
  for (const VarIndex i : variables) dataset.variable(i);
  if (auto feed = dataset.openFeed()) {
    ProcDSIterator iterator(std::move(feed));
    while (const Case* each = iterator.NextCase()) {
      if (iterator.SplitGroupEnd()) {
        lines.push_back("end of " + splitText(dataset));
        continue;
      }
      std::string line;
      for (const VarIndex i : variables) {
        const Variable& variable = dataset.declaration(i);
        const double* observation = each->Obs(i);
        line += variable.isString() ? std::string(reinterpret_cast<const char*>(observation),
                                                  static_cast<size_t>(variable.width))
                                    : valueText(variable, *observation);
        line += "|";
      }
      lines.push_back(line + shortestNumber(iterator.Weight()));
    }
  }
  if (dataset.failed()) lines.push_back("failed: " + dataset.failure());
  return lines;
}

/// Runs a command that looks at all variables.
inline std::vector<std::string> casesOf(SourceDataset& dataset) {
  const std::vector<VarIndex> all = allVariables(dataset);
  dataset.beginCommand(all);
  return casesOf(dataset, all);
}
inline std::vector<std::string> casesOf(const DataOptions& options) {
  return casesOf(*openDataset(options));
}
inline std::vector<std::string> casesOf(const std::string& data) {
  return casesOf(dataOptions(data));
}

/// Weights that count, summed by group and values: what every way of reading must agree on.
inline std::map<std::string, double> contentOf(const DataOptions& options) {
  std::map<std::string, double> sums;
  std::vector<std::string> lines = casesOf(options);
  std::vector<std::pair<std::string, double>> open;
  const auto close = [&](const std::string& name) {
    for (const auto& [values, weight] : open) sums[name + " " + values] += weight;
    open.clear();
  };
  for (const std::string& line : lines) {
    if (line.rfind("end of ", 0) == 0 || line.rfind("failed: ", 0) == 0) {
      close(line);
      sums[line] += 0;
      continue;
    }
    const size_t bar = line.rfind('|');
    const std::string text = line.substr(bar + 1);
    const double raw = text == "." || text == "NaN" ? 0 : std::stod(text);
    open.emplace_back(line.substr(0, bar), raw >= 0.5 ? std::floor(raw + 0.5) : 0);
  }
  close("all");
  return sums;
}

}  // namespace workbench::testing
