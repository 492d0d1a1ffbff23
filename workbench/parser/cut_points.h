/// Cut points that are written as dates or times.
#pragma once

#include <optional>

#include "workbench/parser/command_facts.h"
#include "workbench/parser/command_text.h"

namespace workbench {

/// The seconds of a date, time, or date and time; nothing for any other text.
std::optional<double> instantOf(const std::string& text);

/// What is wrong with a cut point in quotes: it must be one of the kind of every variable that it
/// cuts. Nothing when there is none.
std::optional<SyntaxProblem> cutPointProblem(const CommandFacts& facts, ActiveDataset& dataset);

}  // namespace workbench
