/// The texts that readers see for the keys that procedures pass.
#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>

namespace workbench {

/// A key without an entry is shown as it is.
class Catalogue {
 public:
  /// The English texts that the program was built with.
  static Catalogue english();
  /// Those, or the texts of catalogue/en.json beside the running program in their place, key by
  /// key, when that file is there. Throws std::runtime_error that names the file and says what is
  /// wrong with it.
  static Catalogue besideProgram();
  /// Parses {"key": "text", ...}. Throws std::runtime_error that says what is wrong.
  static Catalogue parse(const std::string& json);

  /// Takes the texts of a file {"key": "text", ...} in place of the own ones, key by key. A file
  /// that is not there changes nothing; throws std::runtime_error as above.
  void takeFrom(const std::filesystem::path& file);

  const std::string& text(const std::string& key) const;
  bool contains(const std::string& key) const { return texts_.count(key) != 0; }

 private:
  std::unordered_map<std::string, std::string> texts_;
};

}  // namespace workbench
