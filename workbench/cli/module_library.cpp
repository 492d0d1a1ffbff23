#include "workbench/cli/module_library.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

namespace workbench {
namespace {

/// The folder of the library (or program) that this code is part of.
std::filesystem::path ownFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&ownFolder), &info) == 0 || info.dli_fname == nullptr)
    return ".";
  return std::filesystem::absolute(info.dli_fname).parent_path();
}

}  // namespace

ModuleLibrary::ModuleLibrary() {
  const std::string path = ownFolder() / "proportions.so";
  library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) {
    throw std::runtime_error("the module " + path + " cannot be loaded (" + dlerror() +
                             "); install the program anew, or run: make build");
  }
  entry_ = reinterpret_cast<void (*)()>(dlsym(library_, "PROPORTI"));
  if (entry_ == nullptr) {
    dlclose(library_);
    throw std::runtime_error(
        "the module " + path +
        " has no entry point PROPORTI; install the program anew, or run: make build");
  }
}

ModuleLibrary::~ModuleLibrary() { dlclose(library_); }

}  // namespace workbench
