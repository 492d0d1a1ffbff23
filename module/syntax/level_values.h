/// Levels and cut points converted to a variable's own representation.
#pragma once

#include <string>

#include "module/syntax/parse_context.h"

namespace proportions {

/// A level as it was given, or as a default has it.
struct GivenLevel {
  std::string text;
  bool isNumber;
  double number;  ///< missing unless isNumber
};
GivenLevel levelOf(const TokenInfoObj& token);

/// Adds a level to a definition. False when the variable that the validator holds cannot hold it.
bool addLevel(ValueBuffers& buffers, VarSpecObj& validator, const GivenLevel& level,
              BinInfoElem& element);

/// Adds a cut point to a definition; `tokens` are those that it was written with.
void addCutPoint(ValueBuffers& buffers, double cutPoint, const Tokens& tokens,
                 BinInfoElem& element);

}  // namespace proportions
