#include "workbench/catalogue/catalogue.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace workbench {

extern const char* const kEnglishCatalogue;  // generated from en.json

Catalogue Catalogue::english() { return parse(kEnglishCatalogue); }

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

const std::string& Catalogue::text(const std::string& key) const {
  const auto found = texts_.find(key);
  return found == texts_.end() ? key : found->second;
}

}  // namespace workbench
