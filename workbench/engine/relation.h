/// Tables that the engine can read: Parquet files, tables of a database, results of queries.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/engine/engine_holder.h"
#include "workbench/engine/file_stamp.h"

namespace workbench {

struct RelationColumn {
  std::string name;
  EngineType type;
  bool fromPath = false;  ///< a text that stands in the paths of the files
};

/// One relation and the engine that reads it, confined to its data.
class Relation {
 public:
  /// `label` names the data in messages; `interrupted` may be null, else it outlives the relation.
  Relation(std::string label, const std::atomic<bool>* interrupted);
  Relation(const Relation&) = delete;
  Relation& operator=(const Relation&) = delete;

  const std::string& label() const { return label_; }
  EngineHolder& engine() { return engine_; }
  const EngineHolder& engine() const { return engine_; }
  Database& database() { return engine_.database(); }
  const std::vector<RelationColumn>& columns() const { return columns_; }
  /// What stands after FROM.
  const std::string& sql() const { return sql_; }
  /// Throws DataError when a file is not what it was.
  void refuseChanged() const;

  /// Makes it the relation of this SQL, checks that it only reads, and takes its columns. Nothing
  /// of the engine's settings can be changed afterwards. `place` begins messages about the SQL.
  void take(const std::string& sql, const std::string& place);
  /// The same of a query that somebody wrote: one SELECT statement.
  void takeQuery(const std::string& query);
  void watchFile(const std::string& path, const std::string& label);
  void markPathColumns(const std::vector<std::string>& names);
  /// Says that the range of a column can be had without reading it.
  void markStatistics() { hasStatistics_ = true; }
  bool hasStatistics() const { return hasStatistics_; }

 private:
  std::string label_;
  EngineHolder engine_;
  std::vector<FileStamp> files_;
  std::string sql_;
  std::vector<RelationColumn> columns_;
  bool hasStatistics_ = false;
};

/// A Parquet file, and the texts that its path gives.
struct ParquetFile {
  std::string path;
  std::string label;
  std::vector<std::string> pathValues;
};

/// Files that have the same columns. With a query they are the table `data`. Throws DataError.
std::unique_ptr<Relation> openParquet(const std::string& label,
                                      const std::vector<ParquetFile>& files,
                                      const std::vector<std::string>& pathNames,
                                      const std::optional<std::string>& query,
                                      const std::atomic<bool>* interrupted);

/// A database file, with a table or a query of it. Throws DataError.
std::unique_ptr<Relation> openDatabase(const std::string& file, const std::string& label,
                                       const std::optional<std::string>& query,
                                       const std::optional<std::string>& table,
                                       const std::atomic<bool>* interrupted);

}  // namespace workbench
