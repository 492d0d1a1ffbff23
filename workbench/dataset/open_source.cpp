#include "workbench/dataset/open_source.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>
#include <vector>

#include "workbench/dataset/data_files.h"
#include "workbench/dataset/engine_cases.h"
#include "workbench/dataset/json_cases.h"
#include "workbench/dataset/query_cases.h"
#include "workbench/dataset/server_cases.h"
#include "workbench/dataset/stat_cases.h"
#include "workbench/engine/relation.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// How CSV is written says nothing of other data; `exception` is an option that does.
void refuseTextOptions(const SourceOptions& options, std::string_view what,
                       std::string_view exception = {}) {
  for (const std::string& option : options.textOptions) {
    if (option == exception) continue;
    throw DataError(fmt::format("{}: {} tells how CSV is written, and this is {}; leave it out.",
                                options.data, option, what));
  }
}

void refuseTextOptions(const SourceOptions& options, FileFormat format) {
  constexpr std::string_view kEncoding = "--encoding";  // of the texts
  switch (format) {
    case FileFormat::kDelimited:
    case FileFormat::kTabbed:
      return;
    case FileFormat::kJson:
      return refuseTextOptions(options, "JSON");
    case FileFormat::kParquet:
      return refuseTextOptions(options, "Parquet");
    case FileFormat::kDta:
      return refuseTextOptions(options, ".dta", kEncoding);
    case FileFormat::kSas7bdat:
      return refuseTextOptions(options, ".sas7bdat", kEncoding);
    case FileFormat::kXport:
      return refuseTextOptions(options, ".xpt", kEncoding);
  }
}

OpenedSource openDatabaseSource(const SourceOptions& options) {
  refuseTextOptions(options, "a database");
  if (options.query && options.table) {
    throw DataError("Give either --query or --table, not both.");
  }
  auto relation = openDatabase(options.data.substr(kDatabasePrefix.size()), options.data,
                               options.query, options.table, options.interrupted);
  relation->engine().setProgress(options.progress);
  return {openEngineCases(std::move(relation), options.rules), ""};
}

OpenedSource openServerSource(const SourceOptions& options) {
  refuseTextOptions(options, "a server");
  const std::atomic<bool>* interrupted = options.interrupted;
  return {openServerCases(
              {options.data, options.data.substr(kServerPrefix.size()), options.query,
               options.table, options.password,
               [interrupted] { return interrupted != nullptr && *interrupted; }, options.reads},
              options.rules, options.progress),
          ""};
}

std::unique_ptr<CaseSource> openParquetFiles(const DataFiles& files, const SourceOptions& options) {
  std::vector<ParquetFile> parts;
  for (const DataFile& file : files.files) {
    parts.push_back({file.path, file.label, file.pathValues});
  }
  auto relation =
      openParquet(files.label, parts, files.pathNames, options.query, options.interrupted);
  relation->engine().setProgress(options.progress);
  return openEngineCases(std::move(relation), options.rules);
}

/// What the program reads without the engine.
std::unique_ptr<CaseSource> openOwn(const DataFiles& files, const SourceOptions& options) {
  if (files.format == FileFormat::kDta || files.format == FileFormat::kSas7bdat ||
      files.format == FileFormat::kXport) {
    return openStatCases(files, options.layout.encoding, options.rules, options.interrupted,
                         options.progress);
  }
  if (files.format == FileFormat::kJson) {
    return openJsonCases(files, options.rules, options.interrupted, options.progress);
  }
  return openDelimitedCases(files, options.layout, options.rules, options.interrupted,
                            options.progress);
}

}  // namespace

OpenedSource openSource(const SourceOptions& options) {
  if (options.data.starts_with(kDatabasePrefix)) return openDatabaseSource(options);
  if (options.data.starts_with(kServerPrefix)) return openServerSource(options);
  if (options.table) {
    throw DataError(
        fmt::format("{}: --table names a table of a database; this is a file.", options.data));
  }
  const DataFiles files = findFiles(options.data);
  refuseTextOptions(options, files.format);
  if (files.format == FileFormat::kParquet) {
    return {openParquetFiles(files, options), files.dictionary};
  }
  std::unique_ptr<CaseSource> source = openOwn(files, options);
  if (options.query) {
    source = openQueryCases(*source, *options.query, options.rules, options.interrupted,
                            options.progress);
  }
  return {std::move(source), files.dictionary};
}

}  // namespace workbench
