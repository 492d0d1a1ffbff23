/// The host's plain text display, for developers of a procedure. Users never see it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#pragma GCC visibility push(default)

/// A character of the host's text display.
using BP_Character = char;

/// Writes a line: a text that ends in a zero byte, and the end of the line unless the text has it.
void BP_ToFront(const BP_Character* text);

/// Writes a line with a label and a value: a flag, a whole number, a double, a string, or a list of
/// them.
struct ACACommonDisplay {
  static void DisplayB(const char* label, bool value);
  static void DisplayI(const char* label, int32_t value);
  static void DisplayD(const char* label, double value);
  static void DisplayS(const char* label, const std::string& value);
  static void DisplayBV(const char* label, const std::vector<bool>& values);
  static void DisplayIV(const char* label, const std::vector<int32_t>& values);
  static void DisplayDV(const char* label, const std::vector<double>& values);
  static void DisplaySV(const char* label, const std::vector<std::string>& values);
};

#pragma GCC visibility pop
