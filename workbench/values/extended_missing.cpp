#include "workbench/values/extended_missing.h"

namespace workbench {
namespace {

constexpr std::string_view kLetters = "_abcdefghijklmnopqrstuvwxyz";
constexpr double kStep = 4096.0;

}  // namespace

std::optional<double> extendedMissing(char letter) {
  const size_t place = kLetters.find(letter);
  if (place == std::string_view::npos) return std::nullopt;
  return kFirstExtendedMissing * (1.0 + static_cast<double>(place) / kStep);
}

std::string extendedMissingText(double value) {
  if (!isExtendedMissing(value)) return {};
  const auto place = static_cast<size_t>((value / kFirstExtendedMissing - 1.0) * kStep);
  return std::string(".") + kLetters[place];
}

std::optional<double> parseExtendedMissing(std::string_view text) {
  if (text.size() != 2 || text[0] != '.') return std::nullopt;
  const char letter = text[1];
  return extendedMissing(letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a')
                                                        : letter);
}

}  // namespace workbench
