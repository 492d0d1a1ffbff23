// Text functions for ASCII, in byte order.
#include "host/strings.h"

#include <cstring>
#include <string>

#include "tests/recording/host.h"

using recording::Call;

char* ZELKMBstrtrim_A(char* text) {
  Call call("ZELKMBstrtrim_A", Call::May::kNotThrow, static_cast<const char*>(text));
  size_t length = std::strlen(text);
  while (length > 0 && text[length - 1] == ' ') --length;
  text[length] = '\0';
  return call.gives(text);
}

char* ZELKMBstrupr_A(char* text) {
  Call call("ZELKMBstrupr_A", Call::May::kNotThrow, static_cast<const char*>(text));
  for (char* at = text; *at != '\0'; ++at) {
    if (*at >= 'a' && *at <= 'z') *at = static_cast<char>(*at - 'a' + 'A');
  }
  return call.gives(text);
}

char* ZELKMBstrlwr_A(char* text) {
  Call call("ZELKMBstrlwr_A", Call::May::kNotThrow, static_cast<const char*>(text));
  for (char* at = text; *at != '\0'; ++at) {
    if (*at >= 'A' && *at <= 'Z') *at = static_cast<char>(*at - 'A' + 'a');
  }
  return call.gives(text);
}

int ZELKMBstrncoll_A(const char* a, const char* b, size_t n) {
  Call call("ZELKMBstrncoll_A", Call::May::kNotThrow, a, b, n);
  const int order = std::strncmp(a, b, n);
  return call.gives(order < 0 ? -1 : order > 0 ? 1 : 0);
}
