#include "workbench/odbc/odbc_library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr const char* kFile = "libodbc.so.2";
constexpr const char* kRemedy =
    "SQL servers are reached through the ODBC driver manager: install the package libodbc2 "
    "(unixodbc), and the server's driver.";

}  // namespace

OdbcLibrary loadOdbc(const char* file) {
  void* handle = dlopen(file, RTLD_LAZY | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* reason = dlerror();
    throw DataError(fmt::format("{} cannot be loaded: {}.\n{}", file,
                                reason == nullptr ? "no reason is known" : reason, kRemedy));
  }
  OdbcLibrary library;
  const auto find = [&](const char* symbol) {
    void* address = dlsym(handle, symbol);
    if (address != nullptr) return address;
    dlclose(handle);
    throw DataError(fmt::format("{} lacks the function {}.\n{}", file, symbol, kRemedy));
  };
#define WORKBENCH_BIND(name) \
  library.name = reinterpret_cast<decltype(library.name)>(find("SQL" #name));
  WORKBENCH_ODBC_FUNCTIONS(WORKBENCH_BIND)
#undef WORKBENCH_BIND
  return library;
}

const OdbcLibrary& odbc() {
  static const OdbcLibrary library = loadOdbc(kFile);
  return library;
}

}  // namespace workbench
