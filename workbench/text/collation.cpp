#include "workbench/text/collation.h"

#include <unicode/ucol.h>
#include <unicode/uiter.h>

#include <memory>

namespace workbench {
namespace {

struct CollatorCloser {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

/// The collator of the default locale, or of the root when that has none; null when ICU has no data
/// at all.
Collator openCollator() {
  UErrorCode status = U_ZERO_ERROR;
  Collator collator(ucol_open(nullptr, &status));
  if (U_FAILURE(status)) {
    status = U_ZERO_ERROR;
    collator.reset(ucol_open("", &status));
  }
  return collator;
}

}  // namespace

int compareStrings(std::string_view a, std::string_view b) {
  if (a == b) return 0;
  thread_local const Collator collator = openCollator();
  if (collator) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result =
        ucol_strcollUTF8(collator.get(), a.data(), static_cast<int32_t>(a.size()), b.data(),
                         static_cast<int32_t>(b.size()), &status);
    if (U_SUCCESS(status) && result != UCOL_EQUAL) return result == UCOL_LESS ? -1 : 1;
  }
  return a < b ? -1 : 1;
}

}  // namespace workbench
