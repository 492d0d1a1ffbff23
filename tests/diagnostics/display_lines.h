/// What the text display was given, as a test writes it down.
#pragma once

#include <string>
#include <vector>

#include "tests/recording/host.h"

namespace diagnostics {

/// One line per call of the display, in order: "B label = true" for DisplayB, likewise I, D, S and
/// the lists BV, IV, DV, SV; the text itself, with \n for its line breaks, for a plain line.
std::vector<std::string> displayLines(const recording::Transcript& transcript);

/// The lines of a block of text, without the blanks that indent them; empty lines are skipped.
std::vector<std::string> linesOf(const std::string& block);

/// The banner that opens a dump.
extern const char* const kBanner;

}  // namespace diagnostics
