/// The text of a file from its first to its last byte, decompressed and in UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "workbench/delimited/byte_input.h"

namespace workbench {

class TextStream {
 public:
  virtual ~TextStream() = default;
  /// Up to `most` bytes (at least 64); 0 at the end only. Throws DataError for what is damaged, cut
  /// off or not of its encoding.
  virtual size_t read(char* to, size_t most) = 0;
  /// How many bytes of the input were used.
  virtual uint64_t position() const = 0;
};

/// `path` tells by its ending whether the input is compressed (.gz, .zst); an `encoding` that is
/// empty is UTF-8, which is not checked here. The input outlives the stream.
std::unique_ptr<TextStream> openText(ByteInput& input, const std::string& path,
                                     const std::string& label, const std::string& encoding);

/// Throws DataError when no encoding of that name is known.
void refuseUnknownEncoding(const std::string& encoding);

}  // namespace workbench
