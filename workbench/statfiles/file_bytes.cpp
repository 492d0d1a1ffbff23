#include "workbench/statfiles/file_bytes.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "workbench/statfiles/worker_process.h"

namespace workbench {
namespace {

constexpr size_t kRecord = 80;  // of transport files
constexpr size_t kWindow = kRecord * 8192;
constexpr size_t kKept = 8;
constexpr std::string_view kMember = "HEADER RECORD*******MEMB";
/// The heading of the first data set begins with the fourth record.
constexpr uint64_t kFirstMember = 3 * kRecord;

}  // namespace

FileBytes::FileBytes(int descriptor, uint64_t size)
    : descriptor_(descriptor), size_(size), window_(kWindow, '\0') {}

bool FileBytes::fill() {
  windowStart_ = position_ / kWindow * kWindow;
  windowSize_ = 0;
  while (windowSize_ < kWindow) {
    const ssize_t count = ::pread(descriptor_, window_.data() + windowSize_, kWindow - windowSize_,
                                  static_cast<off_t>(windowStart_ + windowSize_));
    if (count < 0) return false;
    if (count == 0) break;
    windowSize_ += static_cast<size_t>(count);
  }
  for (size_t at = 0; at + kMember.size() <= windowSize_; at += kRecord) {
    if (windowStart_ + at > kFirstMember &&
        std::memcmp(window_.data() + at, kMember.data(), kMember.size()) == 0) {
      secondMember_ = true;
    }
  }
  // Only new bytes are progress: a damaged file may send its reader round in circles.
  if (windowStart_ + windowSize_ > farthest_) extendTime();
  farthest_ = std::max(farthest_, windowStart_ + windowSize_);
  return true;
}

ssize_t FileBytes::read(char* to, size_t most) {
  size_t got = 0;
  while (got < most) {
    if (position_ < windowStart_ || position_ >= windowStart_ + windowSize_) {
      if (!fill()) return -1;
      if (position_ >= windowStart_ + windowSize_) break;
    }
    const auto offset = static_cast<size_t>(position_ - windowStart_);
    const size_t count = std::min(most - got, windowSize_ - offset);
    std::memcpy(to + got, window_.data() + offset, count);
    got += count;
    position_ += count;
  }
  lastAsked_ = most;
  lastGot_.assign(to, std::min(got, kKept));
  readUntil_ = position_;
  return static_cast<ssize_t>(got);
}

off_t FileBytes::seek(off_t offset, int whence) {
  off_t base = 0;
  if (whence == SEEK_CUR) base = static_cast<off_t>(position_);
  if (whence == SEEK_END) base = static_cast<off_t>(size_);
  off_t target = 0;
  if (__builtin_add_overflow(base, offset, &target) || target < 0) return -1;
  position_ = static_cast<uint64_t>(target);
  return target;
}

std::string FileBytes::tail(uint64_t from, size_t most) const {
  std::string bytes(from < size_ ? std::min<uint64_t>(size_ - from, most) : 0, '\0');
  const ssize_t count = ::pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(from));
  bytes.resize(count < 0 ? 0 : static_cast<size_t>(count));
  return bytes;
}

}  // namespace workbench
