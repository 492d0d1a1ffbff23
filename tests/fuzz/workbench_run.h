/// Runs the command on data in memory, as the program does, and checks what came out.
#pragma once

#include <string>

#include "tests/memory/memory_dataset.h"

namespace fuzz {

/// Runs every command of a text and gives the JSON document.
std::string runCommands(workbench::MemoryDataset& data, const std::string& text);

/// The same; the document is checked: it is well formed, a refused command says why, probabilities
/// lie between 0 and 1 and bounds between -1 and 1. The other formats are rendered, too.
std::string checkCommands(workbench::MemoryDataset& data, const std::string& text);

}  // namespace fuzz
