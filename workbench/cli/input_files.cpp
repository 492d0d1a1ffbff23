#include "workbench/cli/input_files.h"

#include <unistd.h>

#include <utility>

#include "workbench/engine/source.h"

namespace workbench {
namespace {

constexpr std::string_view kDatabase = "duckdb:";

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

void addData(const std::string& data, Collector& files) {
  if (data == "-") return files.addStandardInput("the data on standard input");
  if (data.compare(0, kDatabase.size(), kDatabase) != 0) return files.add("the data file", data);
  const std::string file = data.substr(kDatabase.size());
  files.add("the database", file);
  files.add("the database's log", file + ".wal");
}

}  // namespace

std::vector<InputFile> inputFiles(const ProgramOptions& options) {
  Collector files;
  if (!options.counts) addData(options.data.data, files);
  const std::string beside = options.counts ? "" : dictionaryBeside(options.data.data);
  const std::string dictionary = options.data.schema.value_or(beside);
  if (!dictionary.empty() && dictionary != "none") files.add("the dictionary", dictionary);
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
