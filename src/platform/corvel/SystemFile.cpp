#include "SystemFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include <corvel/Path.h>

namespace corvel {
namespace {

// The largest transfer that one call of Linux makes.
constexpr std::size_t kLargestTransfer = 0x7FFFF000;

std::error_code LastError() { return {errno, std::generic_category()}; }

int OpenFlags(const FileMode& mode) {
  int flags = O_CLOEXEC;
  flags |= mode.read && mode.write ? O_RDWR : mode.write ? O_WRONLY : O_RDONLY;
  if (mode.create) flags |= O_CREAT;
  if (mode.mustBeNew) flags |= O_EXCL;
  return flags;
}

// Not O_TRUNC: ext4 takes a file that was cut, even one that was empty, for one that is replaced,
// and begins to write it to the disk when it is closed (Linux, ext4, "auto_da_alloc"). For a
// temporary file that is work for nothing.
std::error_code Empty(int descriptor, const struct stat& status) {
  if (!S_ISREG(status.st_mode) || status.st_size == 0) return {};
  int result = 0;
  do {
    result = ::ftruncate(descriptor, 0);
  } while (result != 0 && errno == EINTR);
  return result == 0 ? std::error_code() : LastError();
}

// Bytes that one call may move at `offset`, so that no position leaves the range of the system.
std::size_t TransferSize(long long offset, std::size_t count) {
  const auto room = static_cast<unsigned long long>(std::numeric_limits<long long>::max() - offset);
  return static_cast<std::size_t>(std::min({static_cast<unsigned long long>(count), room,
                                            static_cast<unsigned long long>(kLargestTransfer)}));
}

}  // namespace

SystemFile::~SystemFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::error_code SystemFile::Open(const std::wstring& path, const FileMode& mode,
                                 FileSharing /*sharing*/) {
  const std::string name = PathToSystem(path);
  if (name.find('\0') != std::string::npos)
    return std::make_error_code(std::errc::invalid_argument);
  int descriptor = -1;
  do {
    descriptor = ::open(name.c_str(), OpenFlags(mode), 0666);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return LastError();

  struct stat status {};
  std::error_code error;
  if (::fstat(descriptor, &status) != 0) {
    error = LastError();
  } else if (S_ISDIR(status.st_mode)) {
    error = std::make_error_code(std::errc::is_a_directory);
  } else if (mode.truncate) {
    error = Empty(descriptor, status);
  }
  if (error) {
    ::close(descriptor);
    return error;
  }
  descriptor_ = descriptor;
  hasPositions_ = ::lseek(descriptor, 0, SEEK_CUR) >= 0;
  return {};
}

std::error_code SystemFile::Close() {
  const int descriptor = descriptor_;
  descriptor_ = -1;
  // After EINTR the descriptor is gone all the same, and nothing was lost.
  if (::close(descriptor) != 0 && errno != EINTR) return LastError();
  return {};
}

std::size_t SystemFile::ReadSome(long long offset, void* buffer, std::size_t count,
                                 std::error_code& error) {
  const std::size_t wanted = TransferSize(offset, count);
  for (;;) {
    const ssize_t got = hasPositions_ ? ::pread(descriptor_, buffer, wanted, offset)
                                      : ::read(descriptor_, buffer, wanted);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno == EINTR) continue;
    error = LastError();
    return 0;
  }
}

std::size_t SystemFile::Write(long long offset, const void* bytes, std::size_t count,
                              std::error_code& error) {
  const auto* from = static_cast<const unsigned char*>(bytes);
  std::size_t written = 0;
  while (written < count) {
    const long long at = offset + static_cast<long long>(written);
    const std::size_t wanted = TransferSize(at, count - written);
    const ssize_t put = hasPositions_ ? ::pwrite(descriptor_, from + written, wanted, at)
                                      : ::write(descriptor_, from + written, wanted);
    if (put > 0) {
      written += static_cast<std::size_t>(put);
    } else if (put == 0) {
      error = std::make_error_code(std::errc::file_too_large);
      break;
    } else if (errno != EINTR) {
      error = LastError();
      break;
    }
  }
  return written;
}

long long SystemFile::Length(std::error_code& error) const {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) {
    error = LastError();
    return 0;
  }
  if (S_ISREG(status.st_mode)) return status.st_size;
  // The size of a disk or another device is where its end is.
  const off_t here = ::lseek(descriptor_, 0, SEEK_CUR);
  const off_t end = ::lseek(descriptor_, 0, SEEK_END);
  if (here < 0 || end < 0) {
    error = LastError();
    return 0;
  }
  ::lseek(descriptor_, here, SEEK_SET);
  return end;
}

}  // namespace corvel
