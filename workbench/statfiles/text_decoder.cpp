#include "workbench/statfiles/text_decoder.h"

#include <fmt/format.h>
#include <unicode/ucnv.h>

#include <algorithm>

#include "workbench/text/utf8.h"
#include "workbench/values/data_error.h"

namespace workbench {
namespace {

constexpr size_t kWidestCharacter = 4;

/// Characters that every encoding with ASCII in it spells the same, and no escape sequence.
bool isPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < '\x7F'; });
}

}  // namespace

void TextDecoder::Close::operator()(UConverter* converter) const { ucnv_close(converter); }

TextDecoder::TextDecoder(const std::string& encoding, const std::string& label) {
  // A file that names none has nothing but what all have in common.
  const std::string name = encoding.empty() ? "UTF-8" : encoding;
  // Code pages have a prefix that says whose they are.
  const std::string page = name.compare(0, 2, "CP") == 0 ? "ibm-" + name.substr(2) : name;
  for (const std::string& spelling : {name, "x-" + name, page}) {
    UErrorCode error = U_ZERO_ERROR;
    converter_.reset(ucnv_open(spelling.c_str(), &error));
    if (U_SUCCESS(error) && converter_ != nullptr) break;
    converter_.reset();
  }
  UErrorCode error = U_ZERO_ERROR;
  if (converter_ != nullptr) {
    ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
  }
  if (converter_ == nullptr || U_FAILURE(error)) {
    throw DataError(
        fmt::format("{}: the encoding {} of its texts is not known here; name the right one with "
                    "--encoding.",
                    label, name));
  }
  isUtf8_ = ucnv_getType(converter_.get()) == UCNV_UTF8;
  std::string letters;
  for (char c = ' '; c < '\x7F'; ++c) letters += c;
  std::string scratch;
  std::string_view same;
  keepsAscii_ = isUtf8_ || (decode(letters, scratch, same) && same == letters);
}

TextDecoder::~TextDecoder() = default;
TextDecoder::TextDecoder(TextDecoder&&) noexcept = default;

bool TextDecoder::decode(std::string_view bytes, std::string& scratch, std::string_view& text) {
  text = bytes;
  if (bytes.empty() || (keepsAscii_ && isPlainAscii(bytes))) return true;
  if (isUtf8_) return isUtf8(bytes);
  scratch.resize(bytes.size() * kWidestCharacter);
  UErrorCode error = U_ZERO_ERROR;
  ucnv_reset(converter_.get());
  const int32_t size = ucnv_toAlgorithmic(UCNV_UTF8, converter_.get(), scratch.data(),
                                          static_cast<int32_t>(scratch.size()), bytes.data(),
                                          static_cast<int32_t>(bytes.size()), &error);
  if (U_FAILURE(error)) return false;
  scratch.resize(static_cast<size_t>(size));
  text = scratch;
  return true;
}

}  // namespace workbench
