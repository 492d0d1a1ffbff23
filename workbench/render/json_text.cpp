#include "workbench/render/json_text.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "host/constants.h"
#include "workbench/render/cell_texts.h"

namespace workbench {

std::string jsonString(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string jsonNumber(double value) {
  if (value == kSystemMissing) return "null";
  const std::string text = exactNumber(value);
  return std::isfinite(value) ? text : jsonString(text);
}

std::string splitObject(const ShownSplit& split) {
  std::string result = "{";
  for (const auto& [name, value] : split) {
    if (result.size() > 1) result += ',';
    result.append(jsonString(name)).append(":").append(jsonString(value));
  }
  return result + '}';
}

}  // namespace workbench
