#include "workbench/cli/input_files.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "workbench/dataset/data_files.h"
#include "workbench/dataset/open_source.h"
#include "workbench/odbc/connection_text.h"

namespace workbench {
namespace {

class Collector {
 public:
  void add(const std::string& what, const std::string& path) {
    add(what + " " + path, identityOf(path));
  }
  /// A file that may come to be.
  void addCompanion(const std::string& what, const std::string& path) {
    files_.push_back({what + " " + path, identityOf(path), placeOf(path)});
  }
  /// A database, or whatever else a driver reads, if it is a file.
  void addDatabase(const std::string& path) {
    if (!identityOf(path)) return;
    add("the file", path);
    for (const char* ending : {"-wal", "-shm", "-journal"}) {
      addCompanion("the database's log", path + ending);
    }
  }
  void addStandardInput(const std::string& what) { add(what, identityOf(STDIN_FILENO)); }
  std::vector<InputFile> take() { return std::move(files_); }

 private:
  void add(const std::string& what, const std::optional<FileIdentity>& identity) {
    if (identity) files_.push_back({what, *identity});
  }
  std::vector<InputFile> files_;
};

std::string environment(const char* name, const std::string& otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr || *value == '\0' ? otherwise : value;
}

/// What a connection string names, and where the driver manager looks names up.
void addServer(const std::string& text, Collector& files) {
  for (const std::string& value : attributeValues(connectionAttributes(text))) {
    files.addDatabase(value);
  }
  const std::string system = environment("ODBCSYSINI", "/etc") + "/";
  for (const std::string& path :
       {environment("ODBCINI", environment("HOME", "") + "/.odbc.ini"), system + "odbc.ini",
        system + environment("ODBCINSTINI", "odbcinst.ini")}) {
    files.add("the driver manager's file", path);
  }
}

/// The files of DATA, and the dictionary unless another one is given.
void addData(const DataOptions& options, Collector& files) {
  if (options.data.starts_with(kDatabasePrefix)) {
    const std::string file = options.data.substr(kDatabasePrefix.size());
    files.add("the database", file);
    files.addCompanion("the database's log", file + ".wal");
    return;
  }
  if (options.data.starts_with(kServerPrefix)) {
    return addServer(options.data.substr(kServerPrefix.size()), files);
  }
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

std::vector<InputFile> databaseFiles(const std::string& path) {
  Collector files;
  files.addDatabase(path);
  return files.take();
}

void refuseToOverwrite(const std::vector<InputFile>& inputs, const std::string& outputPath,
                       const OutputTarget& output) {
  const std::optional<FileIdentity> identity = output.identity();
  const std::string place = output.place();
  for (const InputFile& input : inputs) {
    const bool isSame =
        identity ? input.identity == identity : !place.empty() && input.place == place;
    if (!isSame) continue;
    throw UsageError("the output " + outputPath + " is " + input.what +
                     ", which this run reads; name another file");
  }
}

}  // namespace workbench
