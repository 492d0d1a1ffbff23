/// What a report says of the methods that it used.
#pragma once

#include "workbench/output/document.h"
#include "workbench/render/writer.h"

namespace workbench {

/// Writes definition, formula and source of every method that has rows in the tables, in their
/// order and from the documents that describe the methods. Nothing when there is none.
void writeHtmlMethods(const DocumentProcedure& procedure, Writer& out);

}  // namespace workbench
