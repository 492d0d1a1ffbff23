/// The documents that the library was built with, as they are: Markdown.
#pragma once

namespace workbench {

extern const char* const kCommandDocument;
extern const char* const kMethodsDocument;
extern const char* const kOneSampleDocument;
extern const char* const kPairedDocument;
extern const char* const kIndependentDocument;

}  // namespace workbench
