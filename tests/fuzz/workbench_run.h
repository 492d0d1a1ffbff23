/// Runs the command on data in memory, as the program does, and checks what came out.
#pragma once

#include <string>

#include "tests/memory/memory_dataset.h"
#include "workbench/catalogue/catalogue.h"
#include "workbench/output/output_document.h"
#include "workbench/render/render.h"

namespace fuzz {

inline constexpr workbench::Format kFormats[] = {
    workbench::Format::kText, workbench::Format::kMarkdown, workbench::Format::kHtml,
    workbench::Format::kJson, workbench::Format::kCsv};

/// Runs every command of a text and checks what came out: a refused command says why, probabilities
/// lie between 0 and 1, bounds between -1 and 1, and no count is negative.
void checkCommands(workbench::MemoryDataset& data, const std::string& text);

/// The same; gives the document in that format.
std::string renderCommands(workbench::MemoryDataset& data, const std::string& text,
                           workbench::Format format);

/// Renders a document. JSON is well formed; what is meant for a terminal has no control characters.
std::string checkedRendering(const workbench::OutputDocument& document, workbench::Format format,
                             const workbench::RenderOptions& options = {});

/// The displayed English; read once.
const workbench::Catalogue& english();

}  // namespace fuzz
