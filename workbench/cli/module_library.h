/// The procedure module, loaded from beside the host's library.
#pragma once

#include <string>

namespace workbench {

class ModuleLibrary {
 public:
  /// Loads proportions.so. Throws std::runtime_error that names the file and says what to do.
  ModuleLibrary();
  ~ModuleLibrary();
  ModuleLibrary(const ModuleLibrary&) = delete;
  ModuleLibrary& operator=(const ModuleLibrary&) = delete;

  void run() const { entry_(); }

 private:
  void* library_;
  void (*entry_)();
};

}  // namespace workbench
