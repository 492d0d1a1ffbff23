#include "host/display.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "host/constants.h"
#include "workbench/session/session.h"

namespace {

/// At once, so that the display keeps its place among what else is written, also before a crash.
void write(const std::string& text) {
  std::FILE* display = workbench::currentSession().display;
  std::fwrite(text.data(), 1, text.size(), display);
  std::fflush(display);
}

/// Doubles with 17 digits, so that they read back as they were.
std::string shown(double value) {
  return IsSystemMissing(value) ? "missing" : fmt::format("{:.17g}", value);
}
std::string shown(int32_t value) { return std::to_string(value); }
std::string shown(const std::string& value) { return '"' + value + '"'; }
std::string shown(bool value) { return value ? "true" : "false"; }

void writeLine(const char* label, const std::string& value) {
  write(fmt::format("{}: {}\n", label, value));
}

template <typename List>
void writeList(const char* label, const List& values) {
  std::vector<std::string> texts;
  for (const auto& value : values) texts.push_back(shown(value));
  writeLine(label, fmt::format("[{}]", fmt::join(texts, ", ")));
}

}  // namespace

void BP_ToFront(const BP_Character* text) {
  std::string line = text;
  if (line.empty() || line.back() != '\n') line += '\n';
  write(line);
}

void ACACommonDisplay::DisplayB(const char* label, bool value) { writeLine(label, shown(value)); }
void ACACommonDisplay::DisplayI(const char* label, int32_t value) {
  writeLine(label, shown(value));
}
void ACACommonDisplay::DisplayD(const char* label, double value) { writeLine(label, shown(value)); }
void ACACommonDisplay::DisplayS(const char* label, const std::string& value) {
  writeLine(label, shown(value));
}
void ACACommonDisplay::DisplayBV(const char* label, const std::vector<bool>& values) {
  std::vector<std::string> texts;
  for (const bool value : values) texts.push_back(shown(value));
  writeLine(label, fmt::format("[{}]", fmt::join(texts, ", ")));
}
void ACACommonDisplay::DisplayIV(const char* label, const std::vector<int32_t>& values) {
  writeList(label, values);
}
void ACACommonDisplay::DisplayDV(const char* label, const std::vector<double>& values) {
  writeList(label, values);
}
void ACACommonDisplay::DisplaySV(const char* label, const std::vector<std::string>& values) {
  writeList(label, values);
}
