#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include "workbench/engine/common_types.h"
#include "workbench/engine/read_problem.h"
#include "workbench/engine/relation.h"
#include "workbench/text/text_fold.h"
#include "workbench/values/column_names.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

/// The file as the engine is to be given it: complete, through a link in the working folder when
/// the engine would take its name for a pattern, or as a copy when it can be read only once.
std::string enginePath(const ParquetFile& file, size_t number, EngineHolder& engine) {
  namespace fs = std::filesystem;
  std::string own = fmt::format("{}/data{}.parquet", engine.folder(), number);
  std::error_code error;
  if (!fs::is_regular_file(file.path, error)) {
    std::ifstream from(file.path, std::ios::binary);
    std::ofstream to(own, std::ios::binary);
    std::vector<char> buffer(size_t{1} << 20);
    while (from && to) {
      throwIfSet(engine.watched());
      from.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      to.write(buffer.data(), from.gcount());
    }
    if (!from.eof() || !to.flush()) {
      throw DataError(
          fmt::format("{}: cannot be copied to the working folder ({}). Set TMPDIR to "
                      "a folder with more room.",
                      file.label, std::strerror(errno)));
    }
    return own;
  }
  std::string path = fs::absolute(file.path).string();
  if (path.find_first_of("*?[") == std::string::npos) return path;
  fs::create_symlink(path, own);
  return own;
}

/// The columns as the file has them; the engine renames the second of two with one name.
std::vector<std::string> columnNames(Database& database, const std::string& path) {
  // The schema lists a tree in depth-first order; only the root's children are columns.
  std::vector<std::string> names;
  Query query(database, fmt::format("SELECT name, CAST(coalesce(num_children, 0) AS BIGINT) FROM "
                                    "parquet_schema({})",
                                    quotedText(path)));
  int64_t skip = 0;  // nodes below the column at hand
  bool root = true;
  while (const Chunk chunk = query.fetch()) {
    const auto* texts = chunk.data<duckdb_string_t>(0);
    const auto* children = chunk.data<int64_t>(1);
    for (size_t row = 0; row < chunk.size(); ++row) {
      if (root) {
        root = false;
      } else if (skip > 0) {
        skip += children[row] - 1;
      } else {
        names.emplace_back(textOf(texts[row]));
        skip = children[row];
      }
    }
  }
  return names;
}

void refuseDifferent(const std::vector<std::string>& first, const ParquetFile& firstFile,
                     std::vector<std::string> names, const ParquetFile& file) {
  std::vector<std::string> wanted = first;
  std::sort(wanted.begin(), wanted.end());
  std::sort(names.begin(), names.end());
  if (wanted == names) return;
  std::vector<std::string> lacking;
  std::set_symmetric_difference(wanted.begin(), wanted.end(), names.begin(), names.end(),
                                std::back_inserter(lacking));
  throw DataError(fmt::format("{}: its columns differ from those of {}: only one of them has {}.",
                              file.label, firstFile.label, lacking.front()));
}

std::string relationOf(const std::vector<std::string>& paths, const std::vector<ParquetFile>& files,
                       const std::vector<std::string>& pathNames, const CommonTypes& types) {
  if (pathNames.empty() && !types.mustConvert()) {
    std::string list;
    for (const std::string& path : paths) list += (list.empty() ? "" : ", ") + quotedText(path);
    return fmt::format("read_parquet([{}], hive_partitioning=false, union_by_name=true)", list);
  }
  std::string all;
  for (size_t i = 0; i < paths.size(); ++i) {
    all += fmt::format("{}SELECT {}", i == 0 ? "(" : " UNION ALL BY NAME ", types.selection(i));
    for (size_t k = 0; k < pathNames.size(); ++k) {
      all +=
          fmt::format(", {} AS {}", quotedText(files[i].pathValues[k]), quotedName(pathNames[k]));
    }
    all += fmt::format(" FROM read_parquet({}, hive_partitioning=false)", quotedText(paths[i]));
  }
  return all + ")";
}

}  // namespace

std::unique_ptr<Relation> openParquet(const std::string& label,
                                      const std::vector<ParquetFile>& files,
                                      const std::vector<std::string>& pathNames,
                                      const std::optional<std::string>& query,
                                      const std::atomic<bool>* interrupted) {
  auto relation = std::make_unique<Relation>(label, interrupted);
  EngineHolder& engine = relation->engine();
  std::vector<std::string> paths;
  for (const ParquetFile& file : files) {
    relation->watchFile(file.path, file.label);
    paths.push_back(enginePath(file, paths.size(), engine));
    std::error_code error;
    if (std::filesystem::file_size(paths.back(), error) == 0) {
      throw DataError(fmt::format("{}: the file is empty.", file.label));
    }
  }
  const std::string* reading = &files.front().label;
  try {
    engine.start(paths);
    std::vector<std::string> first;
    CommonTypes types;
    for (size_t i = 0; i < paths.size(); ++i) {
      reading = &files[i].label;
      const std::vector<std::string> names = columnNames(engine.database(), paths[i]);
      refuseBadNames(names, files[i].label);
      if (i == 0) first = names;
      refuseDifferent(first, files.front(), names, files[i]);
      types.add(files[i].label,
                Statement(engine.database(),
                          fmt::format("SELECT * FROM read_parquet({}, hive_partitioning=false)",
                                      quotedText(paths[i]))));
    }
    first.insert(first.end(), pathNames.begin(), pathNames.end());
    refuseBadNames(first, label);
    const std::string sql = relationOf(paths, files, pathNames, types);
    if (query) {
      engine.database().execute("CREATE TEMP VIEW data AS SELECT * FROM " + sql);
      relation->takeQuery(*query);
      return relation;
    }
    relation->take(sql, label);
    relation->markPathColumns(pathNames);
    relation->markStatistics();
  } catch (const EngineError& error) {
    throw DataError(readProblem(error.what(), *reading));
  }
  return relation;
}

}  // namespace workbench
