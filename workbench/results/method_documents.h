/// The pages of docs/methods that the library was built with.
#pragma once

namespace workbench {

extern const char* const kMethodsPage;
extern const char* const kOneSamplePage;
extern const char* const kPairedPage;
extern const char* const kIndependentPage;

}  // namespace workbench
