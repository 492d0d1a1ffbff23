#include "workbench/catalogue/catalogue.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace workbench {

extern const char* const kEnglishCatalogue;  // generated from en.json

Catalogue Catalogue::english() { return parse(kEnglishCatalogue); }

Catalogue Catalogue::besideProgram() {
  Catalogue result = english();
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) result.takeFrom(program.parent_path() / "catalogue" / "en.json");
  return result;
}

Catalogue Catalogue::parse(const std::string& json) {
  Catalogue result;
  try {
    const nlohmann::json entries = nlohmann::json::parse(json);
    if (!entries.is_object()) {
      throw std::runtime_error("the message catalogue is not an object of keys and texts");
    }
    for (const auto& [key, text] : entries.items()) {
      result.texts_.emplace(key, text.get<std::string>());
    }
  } catch (const nlohmann::json::exception& error) {
    throw std::runtime_error(std::string("the message catalogue cannot be read: ") + error.what());
  }
  return result;
}

void Catalogue::takeFrom(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return;
  const std::string json{std::istreambuf_iterator<char>(stream), {}};
  try {
    Catalogue other = parse(json);
    other.texts_.merge(texts_);  // what the file lacks
    texts_ = std::move(other.texts_);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(file.string() + ": " + error.what());
  }
}

const std::string& Catalogue::text(const std::string& key) const {
  const auto found = texts_.find(key);
  return found == texts_.end() ? key : found->second;
}

}  // namespace workbench
