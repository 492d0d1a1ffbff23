/// Results in words, as one writes them into a report.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/output/document.h"

namespace workbench {

/// A sentence for each row of the interval and test tables, in their order. Shares are in percent,
/// with `digits` decimals or as many as leave each number of the sentence two significant digits.
std::vector<std::string> reportSentences(const DocumentProcedure& procedure,
                                         std::optional<int> digits);

}  // namespace workbench
