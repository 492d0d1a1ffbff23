#include "workbench/cli/input_files.h"

#include <unistd.h>

#include <utility>

#include "workbench/dataset/data_files.h"

namespace workbench {
namespace {

constexpr std::string_view kDatabase = "duckdb:";
constexpr std::string_view kServer = "odbc:";

class Collector {
 public:
  void add(const std::string& what, const std::string& path) {
    add(what + " " + path, identityOf(path));
  }
  void addStandardInput(const std::string& what) { add(what, identityOf(STDIN_FILENO)); }
  std::vector<InputFile> take() { return std::move(files_); }

 private:
  void add(const std::string& what, const std::optional<FileIdentity>& identity) {
    if (identity) files_.push_back({what, *identity});
  }
  std::vector<InputFile> files_;
};

/// The files of DATA, and the dictionary unless another one is given.
void addData(const DataOptions& options, Collector& files) {
  if (options.data.compare(0, kDatabase.size(), kDatabase) == 0) {
    const std::string file = options.data.substr(kDatabase.size());
    files.add("the database", file);
    files.add("the database's log", file + ".wal");
    return;
  }
  if (options.data.compare(0, kServer.size(), kServer) == 0) return;
  const DataFiles found = findFiles(options.data);
  for (const DataFile& file : found.files) {
    if (file.path == "-") {
      files.addStandardInput("the data on standard input");
    } else {
      files.add("the data file", file.path);
      if (!file.catalogue.empty()) files.add("the catalogue of value labels", file.catalogue);
    }
  }
  if (!options.schema && !found.dictionary.empty()) files.add("the dictionary", found.dictionary);
}

}  // namespace

std::vector<InputFile> inputFiles(const ProgramOptions& options) {
  Collector files;
  if (!options.counts) addData(options.data, files);
  const std::string dictionary = options.data.schema.value_or("none");
  if (dictionary != "none") files.add("the dictionary", dictionary);
  if (options.passwordFile) files.add("the password's file", *options.passwordFile);
  if (options.commandFile == "-") {
    files.addStandardInput("the command text on standard input");
  } else if (!options.commandFile.empty()) {
    files.add("the command file", options.commandFile);
  }
  return files.take();
}

void refuseToOverwrite(const std::vector<InputFile>& inputs, const std::string& outputPath,
                       const std::optional<FileIdentity>& output) {
  for (const InputFile& input : inputs) {
    if (!output || input.identity != *output) continue;
    throw UsageError("the output " + outputPath + " is " + input.what +
                     ", which this run reads; name another file");
  }
}

}  // namespace workbench
