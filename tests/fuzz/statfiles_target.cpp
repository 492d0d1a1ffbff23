// Any bytes as a file of a statistics package.
#include <chrono>
#include <fstream>
#include <limits>

#include "tests/fuzz/target.h"
#include "workbench/dataset/stat_cases.h"
#include "workbench/engine/temp_folder.h"
#include "workbench/statfiles/stat_file.h"
#include "workbench/values/data_error.h"

namespace {

using workbench::FileFormat;

/// A file may keep the process busy as long as it is allowed to, three times over.
constexpr std::chrono::seconds kLongest{60};

FileFormat formatOf(const uint8_t* bytes, size_t size) {
  if (size > 0 && bytes[0] == 'H') return FileFormat::kXport;
  return size > 0 && bytes[0] == 0 ? FileFormat::kSas7bdat : FileFormat::kDta;
}

/// Everything that a run does with a file.
void readCases(const std::string& file, FileFormat format) {
  workbench::DataFiles files;
  files.format = format;
  files.label = "input";
  files.files.push_back({file, "input", {}, {}});
  const auto source = workbench::openStatCases(files, "", {}, nullptr, {});
  workbench::CaseRequest request;
  for (size_t i = 0; i < source->variables().size(); ++i) request.columns.push_back({i, {}});
  request.memoryLimit = size_t{64} << 20;
  const workbench::CodedCases cases = source->read(request);
  fuzz::promise(cases.columns.size() == request.columns.size(), "every column is there");
}

void readCatalogue(const std::string& file) {
  const workbench::StatSource source{workbench::StatFormat::kCatalogue, file, "input", "", nullptr};
  fuzz::promise(workbench::readStatHead(source).columns.empty(), "a catalogue has no columns");
}

template <typename Read>
void readOrRefuse(Read read) {
  const auto begin = std::chrono::steady_clock::now();
  try {
    read();
  } catch (const workbench::DataError& error) {
    fuzz::promise(std::string(error.what()).find("input") == 0, "a refusal names the file",
                  error.what());
  }
  fuzz::promise(std::chrono::steady_clock::now() - begin < kLongest, "reading comes to an end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  static const workbench::TempFolder folder;
  const std::string file = folder.path() + "/input";
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  const FileFormat format = formatOf(bytes, size);
  readOrRefuse([&] { readCases(file, format); });
  if (format == FileFormat::kSas7bdat) readOrRefuse([&] { readCatalogue(file); });
  return 0;
}
