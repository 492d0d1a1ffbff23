/// The texts that readers see for the keys that procedures pass.
#pragma once

#include <string>
#include <unordered_map>

namespace workbench {

/// A key without an entry is shown as it is.
class Catalogue {
 public:
  /// The English texts that the program was built with.
  static Catalogue english();
  /// Parses {"key": "text", ...}. Throws std::runtime_error that says what is wrong.
  static Catalogue parse(const std::string& json);

  const std::string& text(const std::string& key) const;
  bool contains(const std::string& key) const { return texts_.count(key) != 0; }

 private:
  std::unordered_map<std::string, std::string> texts_;
};

}  // namespace workbench
