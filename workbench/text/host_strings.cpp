#include "host/strings.h"

#include <unicode/ucasemap.h>

#include <cstring>
#include <memory>
#include <string>

#include "workbench/text/collation.h"

namespace {

struct CaseMapCloser {
  void operator()(UCaseMap* map) const { ucasemap_close(map); }
};

using Mapping = decltype(&ucasemap_utf8ToUpper);

char* mapInPlace(char* text, Mapping mapping) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCaseMap, CaseMapCloser> map(ucasemap_open("", 0, &status));
  if (U_FAILURE(status)) return text;
  const size_t length = std::strlen(text);
  std::string mapped(length, '\0');
  const int32_t size = mapping(map.get(), mapped.data(), static_cast<int32_t>(length), text,
                               static_cast<int32_t>(length), &status);
  // A mapping that would grow beyond the text's own room is not made.
  if (U_FAILURE(status) || size > static_cast<int32_t>(length)) return text;
  std::memcpy(text, mapped.data(), static_cast<size_t>(size));
  text[size] = '\0';
  return text;
}

std::string_view prefix(const char* text, size_t n) { return {text, ::strnlen(text, n)}; }

}  // namespace

char* ZELKMBstrtrim_A(char* text) {
  size_t length = std::strlen(text);
  while (length > 0 && text[length - 1] == ' ') --length;
  text[length] = '\0';
  return text;
}

char* ZELKMBstrupr_A(char* text) { return mapInPlace(text, ucasemap_utf8ToUpper); }
char* ZELKMBstrlwr_A(char* text) { return mapInPlace(text, ucasemap_utf8ToLower); }

int ZELKMBstrncoll_A(const char* a, const char* b, size_t n) {
  return workbench::compareStrings(prefix(a, n), prefix(b, n));
}
