#include "workbench/text/collation.h"

#include <unicode/ucol.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>

namespace workbench {
namespace {

struct CollatorCloser {
  void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

struct EnumerationCloser {
  void operator()(UEnumeration* names) const { uenum_close(names); }
};

/// The locale that orders strings, as ICU names it. Collators are not shared among threads: each
/// opens its own when the choice has changed.
struct Choice {
  std::mutex mutex;
  std::string locale;
  std::atomic<unsigned> version{1};
};

Choice& choice() {
  static Choice current;
  return current;
}

/// Null when there is none.
Collator openCollator(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  Collator collator(ucol_open(locale.c_str(), &status));
  return U_SUCCESS(status) ? std::move(collator) : nullptr;
}

/// Null only when ICU has no data at all; then bytes alone order.
const UCollator* currentCollator() {
  thread_local Collator collator;
  thread_local unsigned version = 0;
  if (version != choice().version) {
    const std::lock_guard lock(choice().mutex);
    collator = openCollator(choice().locale);
    version = choice().version;
  }
  return collator.get();
}

std::string languageOf(const char* locale) {
  std::array<char, ULOC_FULLNAME_CAPACITY> language{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getLanguage(locale, language.data(), language.size(), &status);
  const std::string name = language.data();
  return name == "root" || name == "und" ? "" : name;
}

/// The collation that a locale asks for by name ("phonebook"), or empty.
std::string collationOf(const std::string& locale) {
  std::array<char, ULOC_KEYWORD_AND_VALUES_CAPACITY> value{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getKeywordValue(locale.c_str(), "collation", value.data(), value.size(), &status);
  return U_SUCCESS(status) ? value.data() : "";
}

bool hasCollation(const std::string& locale, const std::string& wanted) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UEnumeration, EnumerationCloser> names(
      ucol_getKeywordValuesForLocale("collation", locale.c_str(), false, &status));
  while (const char* name = uenum_next(names.get(), nullptr, &status)) {
    if (wanted == name) return true;
  }
  return false;
}

/// The locale's name for ICU. Throws std::invalid_argument.
std::string localeOf(const std::string& tag) {
  std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
  int32_t understood = 0;
  UErrorCode status = U_ZERO_ERROR;
  uloc_forLanguageTag(tag.c_str(), locale.data(), locale.size(), &understood, &status);
  const bool isPrivate = tag.size() > 1 && (tag[0] == 'x' || tag[0] == 'X') && tag[1] == '-';
  if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING || tag.empty() || isPrivate ||
      static_cast<size_t>(understood) != tag.size()) {
    throw std::invalid_argument("'" + tag +
                                "' is not a language tag; write one such as de or sv-SE, or und "
                                "for the order of no language in particular");
  }
  return locale.data();
}

void refuseWithoutData(const std::string& tag, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const Collator collator = openCollator(locale);
  const char* found =
      collator ? ucol_getLocaleByType(collator.get(), ULOC_VALID_LOCALE, &status) : nullptr;
  if (found == nullptr || U_FAILURE(status) ||
      (!languageOf(locale.c_str()).empty() && languageOf(found).empty())) {
    throw std::invalid_argument("there is no order of strings for '" + tag +
                                "'; und has that of no language in particular");
  }
  const std::string collation = collationOf(locale);
  if (!collation.empty() && !hasCollation(locale, collation)) {
    throw std::invalid_argument("'" + tag + "' asks for the order '" + collation +
                                "', which its language does not have");
  }
}

}  // namespace

void orderStringsBy(const std::string& languageTag) {
  std::string locale = localeOf(languageTag);
  refuseWithoutData(languageTag, locale);
  const std::lock_guard lock(choice().mutex);
  choice().locale = std::move(locale);
  ++choice().version;
}

int compareStrings(std::string_view a, std::string_view b) {
  if (a == b) return 0;
  if (const UCollator* collator = currentCollator()) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result =
        ucol_strcollUTF8(collator, a.data(), static_cast<int32_t>(a.size()), b.data(),
                         static_cast<int32_t>(b.size()), &status);
    if (U_SUCCESS(status) && result != UCOL_EQUAL) return result == UCOL_LESS ? -1 : 1;
  }
  return a < b ? -1 : 1;
}

}  // namespace workbench
