/// One table as text.
#pragma once

#include "workbench/output/document.h"
#include "workbench/render/render.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Writes a table with its heading and footnotes, no line wider than options.width: rows headed
/// from the outside in, an outer label once for its rows, columns headed in levels, numbers aligned
/// on the decimal point. Where that is too wide, labels and headings are broken; then the outer
/// labels, and with them the columns that repeat in all their rows, become headings of sections; at
/// last every row becomes a list of its numbers.
void writeTextTable(const Table& table, const RenderOptions& options, Writer& out);

}  // namespace workbench
