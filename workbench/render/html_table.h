/// One table of an HTML report.
#pragma once

#include <string>

#include "workbench/output/document.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Writes a table with header cells that say what they head, footnotes linked both ways and numbers
/// aligned on the point. A long table is written in parts, each with its headings, so that a
/// browser lays out only what is looked at. `id` begins the table's identifiers and is unique in
/// the page.
void writeHtmlTable(const Table& table, const RenderOptions& options, const std::string& id,
                    Writer& out);

}  // namespace workbench
