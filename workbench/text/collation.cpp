#include "workbench/text/collation.h"

#include <unicode/ucol.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace workbench {
namespace {

struct CollatorCloser {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

/// The locale that the environment asks for to compare strings; "" when it asks for none.
std::string environmentLocale() {
  for (const char* name : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

/// The name that ICU knows a locale of the environment ("de_DE.UTF-8") by. The C locale has the
/// order of ASCII.
std::string icuName(const std::string& posixName) {
  const std::string language = posixName.substr(0, posixName.find_first_of(".@"));
  return language.empty() || language == "C" || language == "POSIX" ? "en_US_POSIX" : language;
}

Collator openFor(const char* locale) {
  UErrorCode status = U_ZERO_ERROR;
  Collator collator(ucol_open(locale, &status));
  return U_SUCCESS(status) ? std::move(collator) : nullptr;
}

/// Null when ICU has no data at all.
Collator openCollator() {
  Collator collator = openFor(icuName(environmentLocale()).c_str());
  return collator ? std::move(collator) : openFor("");
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
