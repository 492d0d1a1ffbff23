/// What the documents say of the command and its methods, by section.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// A heading and the Markdown below it, up to the next heading of its own or a higher level.
struct ManualSection {
  std::string heading;
  std::string text;
};

/// The sections of the command reference, in order; the first is the command as a whole.
const std::vector<ManualSection>& commandSections();

/// What is said of one method: definition, formula, source.
struct ManualMethod {
  std::string keyword;
  bool isInterval;
  std::string text;
};

struct ManualDesign {
  std::string title;       ///< "One sample"
  std::string subcommand;  ///< "ONESAMPLE"
  std::string notation;    ///< what the letters of its formulas mean
  std::string choice;      ///< which method to take
  std::vector<ManualMethod> methods;
};

/// What the formulas of all designs have in common.
const std::string& sharedNotation();

/// One sample, paired samples, independent samples.
const std::vector<ManualDesign>& manualDesigns();

/// The same text without Markdown's marks: each paragraph and each item of a list ("- ...") is one
/// line, lines of examples stay as they are, four blanks before them.
std::string plainText(std::string_view markdown);

}  // namespace workbench
