/// One table as text.
#pragma once

#include "workbench/output/document.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Writes a table with its heading and footnotes: rows headed from the outside in, an outer label
/// once for its rows, columns headed in levels, numbers aligned on the decimal point.
void writeTextTable(const Table& table, Writer& out);

}  // namespace workbench
