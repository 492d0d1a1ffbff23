#include "workbench/engine/duckdb_library.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr const char* kFileName = "libduckdb.so";
constexpr const char* kRemedy =
    "It comes with the program: install that anew, or run `make setup build` in its source tree.";

std::string folderOf(const std::string& file) {
  const size_t slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash);
}

std::vector<std::string> defaultFiles() {
  Dl_info info{};
  std::string folder = ".";
  if (dladdr(reinterpret_cast<const void*>(&defaultFiles), &info) != 0 &&
      info.dli_fname != nullptr) {
    folder = folderOf(info.dli_fname);
  }
  return {folder + "/" + kFileName, folder + "/../lib/" + kFileName};
}

void* find(void* handle, const std::string& file, const char* symbol) {
  void* address = dlsym(handle, symbol);
  if (address != nullptr) return address;
  dlclose(handle);
  throw DataError(
      fmt::format("The data engine {} lacks the function {}: it is not the version "
                  "that this program was built for.\n{}",
                  file, symbol, kRemedy));
}

}  // namespace

DuckdbLibrary loadDuckdb(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    if (access(file.c_str(), F_OK) != 0) continue;
    void* handle = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) {
      const char* reason = dlerror();
      throw DataError(fmt::format("The data engine cannot be loaded: {}.\n{}",
                                  reason == nullptr ? file : reason, kRemedy));
    }
    DuckdbLibrary library;
#define WORKBENCH_BIND(name) \
  library.name = reinterpret_cast<decltype(library.name)>(find(handle, file, "duckdb_" #name));
    WORKBENCH_DUCKDB_FUNCTIONS(WORKBENCH_BIND)
#undef WORKBENCH_BIND
    return library;
  }
  throw DataError(fmt::format("The data engine {} was not found; looked for {}.\n{}", kFileName,
                              fmt::join(files, " and "), kRemedy));
}

const DuckdbLibrary& duckdb() {
  static const DuckdbLibrary library = loadDuckdb(defaultFiles());
  return library;
}

}  // namespace workbench
