/// The engine and its working folder.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "workbench/engine/database.h"
#include "workbench/engine/temp_folder.h"

namespace workbench {

/// Started by the first use.
class EngineHolder {
 public:
  EngineHolder() = default;
  /// In memory. From then on nothing but `paths` (and the working folder) is read, nothing written,
  /// no extension looked for or loaded.
  void start(const std::vector<std::string>& paths);
  /// The same with a database file that is opened for reading only.
  void startOn(const std::string& databaseFile);
  /// No setting is changed any more. Everything that is not the program's own must come later.
  void lock();

  bool started() const { return database_ != nullptr; }
  Database& database() { return *database_; }
  const std::string& folder();
  /// As of a Database.
  void watch(const std::atomic<bool>* interrupted) { watched_ = interrupted; }
  const std::atomic<bool>* watched() const { return watched_; }
  /// Queries tell of themselves as reading.
  void setProgress(ProgressCallback callback);

 private:
  void open(const std::string& file, const std::vector<std::string>& paths);

  std::unique_ptr<TempFolder> folder_;  // outlives the database, which writes to it
  std::unique_ptr<Database> database_;
  const std::atomic<bool>* watched_ = nullptr;
  ProgressCallback progress_;
};

}  // namespace workbench
