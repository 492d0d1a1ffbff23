/// Pieces of JSON.
#pragma once

#include <string>
#include <string_view>

#include "workbench/output/document.h"
#include "workbench/render/writer.h"

namespace workbench {

/// A JSON string; bytes that are no UTF-8 become the replacement character.
std::string jsonString(std::string_view text);

/// A number that reads back as the same double; null for the system-missing value, a string for
/// what is not finite.
std::string jsonNumber(double value);

/// An object of the split variables and their values.
std::string splitObject(const ShownSplit& split);

/// What was read and left out, as an object.
void writeJsonCases(const CaseReport& report, Writer& out);
/// One piece of advice, as an object.
void writeJsonAdvice(const Advice& advice, Writer& out);

}  // namespace workbench
