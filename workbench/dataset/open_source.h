/// From what DATA names to something that delivers cases.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/dataset/case_source.h"
#include "workbench/dataset/delimited_cases.h"
#include "workbench/odbc/server_relation.h"
#include "workbench/session/progress.h"
#include "workbench/values/field.h"

namespace workbench {

/// How DATA begins when it does not name files.
inline constexpr std::string_view kDatabasePrefix = "duckdb:";
inline constexpr std::string_view kServerPrefix = "odbc:";

struct SourceOptions {
  std::string data;  ///< a file, a folder, a pattern, "-", "duckdb:FILE" or "odbc:..."
  std::optional<std::string> query;
  std::optional<std::string> table;
  FieldRules rules;
  TextLayout layout;
  std::vector<std::string> textOptions;  ///< as in DataOptions
  ServerPassword password;
  std::function<void(const std::string& file)> reads;  ///< as in ServerOptions
  /// Set from outside to make all reading throw Interrupted; may be null, else it outlives the
  /// source.
  const std::atomic<bool>* interrupted = nullptr;
  ProgressCallback progress;  ///< may be empty; called from any thread
};

struct OpenedSource {
  std::unique_ptr<CaseSource> source;
  std::string dictionary;  ///< where a dictionary would be; empty: nowhere
};

/// Throws DataError.
OpenedSource openSource(const SourceOptions& options);

}  // namespace workbench
