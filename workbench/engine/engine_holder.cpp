#include "workbench/engine/engine_holder.h"

#include <fmt/format.h>

#include <utility>

namespace workbench {

void EngineHolder::open(const std::string& file, const std::vector<std::string>& paths) {
  std::vector<std::pair<std::string, std::string>> configuration{
      {"temp_directory", folder()},
      // Beside this come the program's own columns; together they stay below 1 GiB.
      {"memory_limit", "450MB"},
      {"extension_directory", folder()},
      {"autoinstall_known_extensions", "false"},
      {"autoload_known_extensions", "false"},
      {"allow_community_extensions", "false"}};
  if (!file.empty()) {
    configuration.emplace_back("access_mode", "READ_ONLY");
    configuration.emplace_back("enable_external_access", "false");
  }
  database_ = std::make_unique<Database>(file, configuration);
  if (file.empty()) {
    std::string list;
    for (const std::string& path : paths) list += (list.empty() ? "" : ", ") + quotedText(path);
    database_->execute(
        fmt::format("SET allowed_paths = [{}]; SET enable_external_access = false", list));
  }
  // The default buffer for results holds a fraction of a thread's share; the others would wait.
  database_->execute(
      fmt::format("SET home_directory = {}; SET enable_progress_bar = true; "
                  "SET enable_progress_bar_print = false; SET TimeZone = 'UTC'; "
                  "SET streaming_buffer_size = '24MB'",
                  quotedText(folder())));
  database_->setProgress(progress_);
  database_->watch(watched_);
}

void EngineHolder::start(const std::vector<std::string>& paths) { open("", paths); }

void EngineHolder::startOn(const std::string& databaseFile) { open(databaseFile, {}); }

void EngineHolder::lock() { database_->execute("SET lock_configuration = true"); }

const std::string& EngineHolder::folder() {
  if (folder_ == nullptr) folder_ = std::make_unique<TempFolder>();
  return folder_->path();
}

void EngineHolder::setProgress(ProgressCallback callback) {
  progress_ = std::move(callback);
  if (database_ != nullptr) database_->setProgress(progress_);
}

}  // namespace workbench
