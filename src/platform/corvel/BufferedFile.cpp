#include <corvel/BufferedFile.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include <corvel/Exception.h>
#include <corvel/Text.h>

#include "SystemFile.h"

namespace corvel {
namespace {

constexpr const char* kModule = "corvel";
constexpr const char* kFile = "BufferedFile";

// Large enough that system calls cost little, small enough to stay in a processor's cache.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;
// What is read at a place that nothing announced. Bytes that nobody asks for cost as much as the
// system call that brings them from a few kilobytes on.
constexpr std::size_t kSmallestRead = 512;

template <typename Char>
bool ParseMode(const Char* text, FileMode& mode) {
  if (text == nullptr) return false;
  const std::basic_string_view<Char> given(text);
  if (given.empty()) return false;
  switch (given[0]) {
    case 'r':
      mode.read = true;
      break;
    case 'w':
      mode.write = mode.create = mode.truncate = true;
      break;
    case 'a':
      mode.write = mode.create = mode.atEnd = true;
      break;
    default:
      return false;
  }
  for (const Char flag : given.substr(1)) {
    if (flag == '+') {
      mode.read = mode.write = true;
    } else if (flag != 'b') {
      return false;
    }
  }
  return true;
}

template <typename Char>
FileMode RequireMode(const Char* text, bool mustBeNew) {
  FileMode mode;
  if (!ParseMode(text, mode)) Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  mode.mustBeNew = mustBeNew && mode.create;
  return mode;
}

}  // namespace

CBufferedFile::CBufferedFile() = default;

CBufferedFile::~CBufferedFile() {
  try {
    Close();
  } catch (...) {
    LogExceptionInfo(L"CBufferedFile", L"BufferedFile", __LINE__);
  }
}

void CBufferedFile::FailNullBuffer() { throw gsl::fail_fast("The buffer of a transfer is null."); }

void CBufferedFile::Fail(const char* what, const std::string& reason, int line) const {
  throw Exception(kModule, kFile, line,
                  std::string(what) + " \"" + Utf8FromWide(path_) + "\": " + reason, false);
}

void CBufferedFile::RequireOpen(int line) const {
  if (file_ == nullptr) throw Exception(kModule, kFile, line, "The file is not open", false);
}

void CBufferedFile::RequireReadable() const {
  RequireOpen(__LINE__);
  if (!mayRead_) Fail("Cannot read", "it is open for writing only", __LINE__);
}

void CBufferedFile::RequireWritable() const {
  RequireOpen(__LINE__);
  if (!mayWrite_) Fail("Cannot write", "it is open for reading only", __LINE__);
}

void CBufferedFile::Open(const std::wstring& path, const char* mode, FileSharing sharing,
                         bool mustBeNew) {
  Close();
  OpenFile(path, RequireMode(mode, mustBeNew), sharing);
}

void CBufferedFile::Open(const std::wstring& path, const wchar_t* mode, FileSharing sharing,
                         bool mustBeNew) {
  Close();
  OpenFile(path, RequireMode(mode, mustBeNew), sharing);
}

bool CBufferedFile::OpenNoThrow(const std::wstring& path, const char* mode, FileSharing sharing,
                                bool mustBeNew) noexcept {
  try {
    Open(path, mode, sharing, mustBeNew);
    return true;
  } catch (...) {
    return false;
  }
}

bool CBufferedFile::OpenNoThrow(const std::wstring& path, const wchar_t* mode, FileSharing sharing,
                                bool mustBeNew) noexcept {
  try {
    Open(path, mode, sharing, mustBeNew);
    return true;
  } catch (...) {
    return false;
  }
}

void CBufferedFile::OpenFile(const std::wstring& path, const FileMode& mode, FileSharing sharing) {
  path_ = path;
  auto file = std::make_unique<SystemFile>();
  // Before the file, which is emptied by some modes: too little memory must not cost its bytes.
  if (buffer_ == nullptr) buffer_ = std::make_unique<unsigned char[]>(kBufferSize);
  if (const std::error_code error = file->Open(path, mode, sharing)) {
    Fail("Cannot open", error.message(), __LINE__);
  }
  if (mode.read && mode.write && !file->HasPositions()) {
    Fail("Cannot open", "what is no file on a disk goes one way only", __LINE__);
  }
  long long start = 0;
  if (mode.atEnd && file->HasPositions()) {
    std::error_code error;
    start = file->Length(error);
    if (error) Fail("Cannot find the end of", error.message(), __LINE__);
  }
  file_ = std::move(file);
  mayRead_ = mode.read;
  mayWrite_ = mode.write;
  RestartWindow(start);
}

std::size_t CBufferedFile::Read(gsl::not_null<void*> buffer, std::size_t count) {
  return ReadBytes(buffer.get(), count);
}

void CBufferedFile::Write(gsl::not_null<const void*> buffer, std::size_t count) {
  WriteBytes(buffer.get(), count);
}

std::size_t CBufferedFile::ReadSlowly(void* buffer, std::size_t count) {
  RequireReadable();
  const long long left = std::max(0LL, readEnd_ - GetPosition());
  const auto allowed = static_cast<std::size_t>(
      std::min<unsigned long long>(count, static_cast<unsigned long long>(left)));
  const std::size_t got = ReadBeforeEnd(static_cast<unsigned char*>(buffer), allowed);
  if (got < count) end_ = true;
  return got;
}

// The same where no end was set in front of that of the file.
std::size_t CBufferedFile::ReadBeforeEnd(unsigned char* to, std::size_t count) {
  std::size_t got = 0;
  if (pushedBack_ >= 0 && count > 0) {
    to[got++] = static_cast<unsigned char>(pushedBack_);
    pushedBack_ = -1;
    NoteWindow();
  }
  std::size_t kept = 0;  // bytes in front of the cursor that this read took from the window
  for (;;) {
    const std::size_t taken = std::min(count - got, filled_ - cursor_);
    if (taken > 0) std::memcpy(to + got, buffer_.get() + cursor_, taken);
    cursor_ += taken;
    got += taken;
    kept += taken;
    if (got == count) return got;
    const std::size_t missing = count - got;
    if (missing >= kBufferSize) {
      const std::size_t direct = ReadDirectly(to + got, missing);
      got += direct;
      kept = 0;
      if (direct == 0) break;
    } else {
      if (kept + missing > kBufferSize || !file_->HasPositions()) kept = 0;
      if (!FillWindow(missing, kept)) break;
    }
  }
  return got;
}

// Reads behind the window straight into the caller's memory. Returns 0 at the end of the file.
std::size_t CBufferedFile::ReadDirectly(unsigned char* to, std::size_t count) {
  Flush();
  const long long position = windowStart_ + static_cast<long long>(cursor_);
  std::error_code error;
  const std::size_t got = file_->ReadSome(position, to, count, error);
  if (error) Fail("Cannot read", error.message(), __LINE__);
  lastStart_ = position;
  lastEnd_ = position + static_cast<long long>(got);
  RestartWindow(lastEnd_);
  return got;
}

// Where to read when `wanted` bytes are needed at `position`, and, in readAhead_, how much.
//
// At the end of the last window, or a short way behind it, a caller reads on: each window is twice
// as large as the one before. In front of it a caller reads backward: the window then ends with the
// bytes that are needed. Anywhere else only a little is read, since nothing tells what comes next.
// A pipe is only read on, and gives what it has: all that finds room is asked for.
long long CBufferedFile::WindowStartFor(long long position, std::size_t wanted) {
  if (!file_->HasPositions()) {
    readAhead_ = kBufferSize;
    return position;
  }
  const auto size = static_cast<long long>(kBufferSize);
  const bool onward =
      position >= lastEnd_ && position - lastEnd_ <= static_cast<long long>(readAhead_);
  const bool backward = position < lastStart_ && position >= lastStart_ - size;
  readAhead_ = onward || backward ? std::min(readAhead_ * 2, kBufferSize) : kSmallestRead;
  readAhead_ = std::max({readAhead_, wanted, kSmallestRead});
  if (!backward) return position;
  const auto before = static_cast<long long>(readAhead_ - wanted);
  return std::max(0LL, position - before);
}

// Replaces the window by one that holds at least one byte at the position. False at the end.
//
// The `kept` bytes in front of the position stay in the window: who reads a record and writes it
// back will want its start again.
//
// REQUIRES: kept <= cursor_, kept + wanted <= kBufferSize; with kept > 0 the file has positions.
bool CBufferedFile::FillWindow(std::size_t wanted, std::size_t kept) {
  Flush();
  const long long position = windowStart_ + static_cast<long long>(cursor_);
  long long start = WindowStartFor(position, wanted);
  if (kept > 0) return ExtendWindow(position, kept);
  std::error_code error;
  std::size_t got = file_->ReadSome(start, buffer_.get(), readAhead_, error);
  if (!error && start < position && got <= static_cast<std::size_t>(position - start)) {
    // The system may give less than it has; only nothing at the position itself is the end.
    start = position;
    got = file_->ReadSome(start, buffer_.get(), readAhead_, error);
  }
  if (error) {
    RestartWindow(position);
    Fail("Cannot read", error.message(), __LINE__);
  }
  const auto cursor = static_cast<std::size_t>(position - start);
  if (got == 0) {
    RestartWindow(position);
    return false;
  }
  windowStart_ = start;
  cursor_ = cursor;
  filled_ = got;
  lastStart_ = start;
  lastEnd_ = start + static_cast<long long>(got);
  NoteWindow();
  return true;
}

// Moves the last `kept` bytes of the window to its front and reads on behind them.
bool CBufferedFile::ExtendWindow(long long position, std::size_t kept) {
  std::memmove(buffer_.get(), buffer_.get() + cursor_ - kept, kept);
  windowStart_ = position - static_cast<long long>(kept);
  cursor_ = filled_ = kept;
  NoteWindow();
  std::error_code error;
  const std::size_t wanted = std::min(readAhead_, kBufferSize - kept);
  const std::size_t got = file_->ReadSome(position, buffer_.get() + kept, wanted, error);
  if (error) Fail("Cannot read", error.message(), __LINE__);
  filled_ += got;
  lastStart_ = windowStart_;
  lastEnd_ = position + static_cast<long long>(got);
  NoteWindow();
  return got > 0;
}

void CBufferedFile::WriteBytes(const void* bytes, std::size_t count) {
  RequireWritable();
  if (count == 0) return;
  if (pushedBack_ >= 0) MoveTo(GetPosition());
  const long long position = windowStart_ + static_cast<long long>(cursor_);
  if (count > static_cast<unsigned long long>(std::numeric_limits<long long>::max() - position)) {
    Fail("Cannot write", "the position would leave the range of 64 bits", __LINE__);
  }
  if (count >= kBufferSize) {
    Flush();
    std::error_code error;
    const std::size_t written = file_->Write(position, bytes, count, error);
    RestartWindow(position + static_cast<long long>(written));
    if (error) Fail("Cannot write", error.message(), __LINE__);
    return;
  }
  const bool touchesDirty = !HasDirtyBytes() || (cursor_ >= dirtyBegin_ && cursor_ <= dirtyEnd_);
  if (count > kBufferSize - cursor_ || !touchesDirty) {
    Flush();
    RestartWindow(position);
  }
  std::memcpy(buffer_.get() + cursor_, bytes, count);
  dirtyBegin_ = HasDirtyBytes() ? dirtyBegin_ : cursor_;
  cursor_ += count;
  dirtyEnd_ = std::max(dirtyEnd_, cursor_);
  filled_ = std::max(filled_, cursor_);
  NoteWindow();
}

void CBufferedFile::Flush() {
  RequireOpen(__LINE__);
  if (!HasDirtyBytes()) return;
  std::error_code error;
  const std::size_t written =
      file_->Write(windowStart_ + static_cast<long long>(dirtyBegin_), buffer_.get() + dirtyBegin_,
                   dirtyEnd_ - dirtyBegin_, error);
  dirtyBegin_ += written;
  if (error) Fail("Cannot write", error.message(), __LINE__);
  dirtyBegin_ = dirtyEnd_ = 0;
}

long long CBufferedFile::SeekSlowly(long long offset, FileOrigin origin) {
  RequireOpen(__LINE__);
  if (!file_->HasPositions()) Fail("Cannot seek in", "it is no file on a disk", __LINE__);
  long long base = 0;
  if (origin == kFileCurrent) {
    base = GetPosition();
  } else if (origin == kFileEnd) {
    base = GetLength();
  } else if (origin != kFileBegin) {
    Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  }
  if (offset < -base || offset > std::numeric_limits<long long>::max() - base) {
    Fail("Cannot seek in", "the position would be negative or too large", __LINE__);
  }
  MoveTo(base + offset);
  end_ = false;
  return base + offset;
}

// Takes the position to a place without reading. Forgets a byte that was pushed back.
void CBufferedFile::MoveTo(long long position) {
  const long long inWindow = position - windowStart_;
  if (inWindow >= 0 && inWindow <= static_cast<long long>(filled_)) {
    pushedBack_ = -1;
    cursor_ = static_cast<std::size_t>(inWindow);
    NoteWindow();
    return;
  }
  Flush();
  RestartWindow(position);
}

// REQUIRES: nothing is dirty.
void CBufferedFile::RestartWindow(long long position) {
  windowStart_ = position;
  cursor_ = filled_ = 0;
  dirtyBegin_ = dirtyEnd_ = 0;
  pushedBack_ = -1;
  NoteWindow();
}

// Sets the ends of the short roads: whatever changes the window, the pushed-back byte or the file
// calls this.
void CBufferedFile::NoteWindow() {
  returnedAt_ = kNowhere;
  NoteEnds();
}

void CBufferedFile::NoteEnds() {
  const bool plain = file_ != nullptr && pushedBack_ < 0;
  const auto beforeEnd = static_cast<unsigned long long>(std::max(0LL, readEnd_ - windowStart_));
  readable_ = plain && mayRead_
                  ? static_cast<std::size_t>(std::min<unsigned long long>(filled_, beforeEnd))
                  : 0;
  seekable_ = plain && file_->HasPositions() ? filled_ : 0;
}

void CBufferedFile::SetReadEnd(long long position) {
  RequireReadable();
  readEnd_ = std::max(0LL, position);
  end_ = false;
  NoteEnds();
}

long long CBufferedFile::GetPosition() const {
  RequireOpen(__LINE__);
  return windowStart_ + static_cast<long long>(cursor_) - (pushedBack_ >= 0 ? 1 : 0);
}

long long CBufferedFile::GetLength() {
  RequireOpen(__LINE__);
  std::error_code error;
  const long long onDisk = file_->Length(error);
  if (error) Fail("Cannot find the end of", error.message(), __LINE__);
  if (!HasDirtyBytes()) return onDisk;
  return std::max(onDisk, windowStart_ + static_cast<long long>(dirtyEnd_));
}

int CBufferedFile::GetcSlowly() {
  unsigned char byte = 0;
  return ReadBytes(&byte, 1) == 1 ? byte : -1;
}

int CBufferedFile::UnGetcSlowly(int byte) {
  RequireReadable();
  const bool waits = pushedBack_ >= 0 || cursor_ == returnedAt_;
  if (byte < 0 || byte > 0xFF || waits || GetPosition() == 0) return -1;
  pushedBack_ = byte;
  end_ = false;
  NoteWindow();
  return byte;
}

bool CBufferedFile::ReadString(std::string& line) {
  RequireOpen(__LINE__);
  line.clear();
  try {
    bool any = false;
    if (pushedBack_ >= 0) {
      const int byte = Getc();
      if (byte < 0) return false;
      if (byte == '\n') return true;
      line += static_cast<char>(byte);
      any = true;
    }
    RequireReadable();
    for (;;) {
      const unsigned char* from = buffer_.get() + cursor_;
      const std::size_t available = cursor_ < readable_ ? readable_ - cursor_ : 0;
      const void* feed = available == 0 ? nullptr : std::memchr(from, '\n', available);
      const std::size_t length =
          feed == nullptr
              ? available
              : static_cast<std::size_t>(static_cast<const unsigned char*>(feed) - from);
      line.append(reinterpret_cast<const char*>(from), length);
      cursor_ += length;
      any = any || length > 0;
      if (feed != nullptr) {
        ++cursor_;
        return true;
      }
      if (GetPosition() >= readEnd_ || !FillWindow(1, 0)) {
        end_ = true;
        return any;
      }
    }
  } catch (const Exception&) {
    return false;
  }
}

int CBufferedFile::Printf(const char* format, ...) {
  RequireWritable();
  if (format == nullptr) Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  char small[256];
  const int length = std::vsnprintf(small, sizeof small, format, arguments);
  va_end(arguments);
  std::string large;
  if (length >= static_cast<int>(sizeof small)) {
    large.resize(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(large.data(), large.size(), format, again);
  }
  va_end(again);
  if (length < 0) Throw_ERR_CORVEL_BAD_PARAMETER(kModule, kFile, __LINE__);
  WriteBytes(large.empty() ? small : large.data(), static_cast<std::size_t>(length));
  return length;
}

void CBufferedFile::Close() {
  if (file_ == nullptr) return;
  std::error_code failed;
  if (HasDirtyBytes()) {
    file_->Write(windowStart_ + static_cast<long long>(dirtyBegin_), buffer_.get() + dirtyBegin_,
                 dirtyEnd_ - dirtyBegin_, failed);
  }
  const std::error_code closing = file_->Close();
  Reset();
  if (failed) Fail("Cannot write", failed.message(), __LINE__);
  if (closing) Fail("Cannot close", closing.message(), __LINE__);
}

bool CBufferedFile::CloseNoThrow(bool discard) noexcept {
  try {
    if (discard) dirtyBegin_ = dirtyEnd_ = 0;
    Close();
    return true;
  } catch (...) {
    return false;
  }
}

void CBufferedFile::Reset() {
  file_.reset();
  mayRead_ = mayWrite_ = false;
  end_ = false;
  lastStart_ = lastEnd_ = 0;
  readAhead_ = 0;
  readEnd_ = kNoReadEnd;
  RestartWindow(0);
}

}  // namespace corvel
