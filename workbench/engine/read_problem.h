/// The engine's complaints about the data, in words for the person who gave the data.
#pragma once

#include <cstdint>
#include <string>

namespace workbench {

struct ReadProblem {
  std::string text;         ///< what, where, what to do
  std::string column;       ///< the column whose value does not fit its type; empty: something else
  std::string value;        ///< that value
  bool conversion = false;  ///< a value does not fit the type that its column was read with
};

/// `label` names the data: a file or a database.
ReadProblem readProblem(const std::string& engineText, const std::string& label);

/// The first line of an engine message, without the kind of error before the colon.
std::string essence(const std::string& engineText);

}  // namespace workbench
