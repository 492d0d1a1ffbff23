// What decompression alone takes: inflates a .gz file in pieces and forgets them.
//
//   inflate_limit FILE
#include <zlib.h>

#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
  std::FILE* file = argc == 2 ? std::fopen(argv[1], "rb") : nullptr;
  z_stream stream{};
  constexpr int kGzipOnly = 16 + MAX_WBITS;
  if (file == nullptr || inflateInit2(&stream, kGzipOnly) != Z_OK) {
    std::fputs("give a .gz file that can be read\n", stderr);
    return 1;
  }
  std::vector<unsigned char> in(size_t{1} << 16U);
  std::vector<unsigned char> out(size_t{1} << 18U);
  int state = Z_OK;
  while (state == Z_OK || state == Z_BUF_ERROR) {
    if (stream.avail_in == 0) {
      stream.avail_in = static_cast<unsigned>(std::fread(in.data(), 1, in.size(), file));
      stream.next_in = in.data();
      if (stream.avail_in == 0) break;
    }
    stream.next_out = out.data();
    stream.avail_out = static_cast<unsigned>(out.size());
    state = inflate(&stream, Z_NO_FLUSH);
  }
  inflateEnd(&stream);
  std::fclose(file);
  if (state == Z_STREAM_END) return 0;
  std::fputs("the file is damaged\n", stderr);
  return 1;
}
