/// Texts of an encoding as UTF-8.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct UConverter;

namespace workbench {

class TextDecoder {
 public:
  /// Throws DataError when no encoding of that name is known; `label` names the file.
  TextDecoder(const std::string& encoding, const std::string& label);
  ~TextDecoder();
  TextDecoder(TextDecoder&&) noexcept;

  /// The text as UTF-8, in `scratch` when it is not the same bytes. False for bytes that are not of
  /// the encoding.
  bool decode(std::string_view bytes, std::string& scratch, std::string_view& text);

 private:
  struct Close {
    void operator()(UConverter* converter) const;
  };
  std::unique_ptr<UConverter, Close> converter_;
  bool keepsAscii_ = false;
  bool isUtf8_ = false;
};

}  // namespace workbench
