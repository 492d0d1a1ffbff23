#include "workbench/delimited/utf8.h"

#include <cstdint>
#include <cstring>

#include "workbench/values/excerpt.h"

namespace workbench {
namespace {

constexpr uint64_t kHighBits = 0x8080'8080'8080'8080;

bool isAscii(const char* data) {
  uint64_t words[4];
  std::memcpy(words, data, sizeof words);
  return ((words[0] | words[1] | words[2] | words[3]) & kHighBits) == 0;
}

}  // namespace

size_t invalidUtf8At(std::string_view text) {
  size_t at = 0;
  while (at < text.size()) {
    while (text.size() - at >= 32 && isAscii(text.data() + at)) at += 32;
    if (at == text.size()) break;
    const size_t length = characterLength(text.substr(at));
    if (length == 0) return at;
    at += length;
  }
  return std::string_view::npos;
}

}  // namespace workbench
