// A binary file with one buffer for reading and writing.
//
//   CBufferedFile file;
//   file.Open(L"towns.dbf", "rb", kFileShareRead, false);
//   unsigned char header[32];
//   if (file.Read(header, sizeof header) < sizeof header) ...   // the file is shorter
#pragma once

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <string>

#include <gsl/pointers>

#include <corvel/Export.h>
#include <corvel/FailFast.h>

namespace corvel {

// What other programs may do with the file while it is open. Windows holds them to it; elsewhere
// files have no such locks and the value has no effect.
enum FileSharing : int {
  kFileExclusive = 0,  // nothing
  kFileShareRead = 1,  // read it
  kFileShareAll = 2,   // read and write it
};

// From where an offset counts.
enum FileOrigin : int {
  kFileBegin = 0,
  kFileCurrent = 1,
  kFileEnd = 2,
};

class SystemFile;
struct FileMode;

// Offsets have 64 bits. Reads and writes may alternate freely. A transfer that is larger than the
// buffer goes straight between the file and the caller's memory. A file that is only read forward,
// backward or here and there costs about one system call for each stretch that it needs.
//
// Every failure of the system (a read, a write, a close) is raised as a corvel::Exception that
// names the path and the system's reason; so is every operation on a closed file, but for the few
// that say otherwise. A pipe can be read or written from front to back; seeking and asking for the
// length raise there.
//
// One thread at a time.
class CORVEL_API CBufferedFile {
 public:
  CBufferedFile();

  // Closes an open file. What cannot be written is lost and goes to the log: call Close to know.
  ~CBufferedFile();

  CBufferedFile(const CBufferedFile&) = delete;
  CBufferedFile& operator=(const CBufferedFile&) = delete;

  // Opens `path`; a file that is open is closed first. `mode` is that of fopen: "r" reads, "w"
  // creates or empties, "a" creates and starts at the end, "+" adds the other direction; "b" may
  // stand or not, since every file is binary. With `mustBeNew` a mode that creates refuses a file
  // that exists.
  //
  // Raises when the file cannot be opened, and leaves this object closed. A folder is no file.
  void Open(const std::wstring& path, const char* mode, FileSharing sharing, bool mustBeNew);
  void Open(const std::wstring& path, const wchar_t* mode, FileSharing sharing, bool mustBeNew);

  // The same, but returns whether the file is open instead of raising.
  bool OpenNoThrow(const std::wstring& path, const char* mode, FileSharing sharing,
                   bool mustBeNew) noexcept;
  bool OpenNoThrow(const std::wstring& path, const wchar_t* mode, FileSharing sharing,
                   bool mustBeNew) noexcept;

  bool IsOpen() const { return file_ != nullptr; }

  // The path with which the file was opened last.
  const std::wstring& GetPath() const { return path_; }

  // Reads up to `count` bytes and returns how many there were: fewer only at the end of the file.
  //
  // A null buffer is a broken precondition and raises gsl::fail_fast.
  std::size_t Read(gsl::not_null<void*> buffer, std::size_t count);
  template <typename T>
  std::size_t Read(T* buffer, std::size_t count) {
    return ReadBytes(CheckNotNull(buffer), count);
  }
  std::size_t Read(std::nullptr_t, std::size_t) { FailNullBuffer(); }

  // Writes all `count` bytes. They may rest in the buffer until the next read elsewhere, Flush or
  // Close.
  //
  // A null buffer is a broken precondition and raises gsl::fail_fast.
  void Write(gsl::not_null<const void*> buffer, std::size_t count);
  template <typename T>
  void Write(T* buffer, std::size_t count) {
    WriteBytes(CheckNotNull(buffer), count);
  }
  void Write(std::nullptr_t, std::size_t) { FailNullBuffer(); }

  // Hands what rests in the buffer to the system.
  void Flush();

  // Moves the position and returns it. A position beyond the end is allowed: reading there gives
  // nothing, writing there fills the gap with zeros. A negative position raises and moves nothing.
  long long Seek(long long offset, FileOrigin origin) {
    const auto inWindow =
        static_cast<unsigned long long>(offset) - static_cast<unsigned long long>(windowStart_);
    if (origin != kFileBegin || inWindow >= seekable_) return SeekSlowly(offset, origin);
    cursor_ = static_cast<std::size_t>(inWindow);
    returnedAt_ = kNowhere;
    end_ = false;
    return offset;
  }

  long long GetPosition() const;

  // In bytes, what still rests in the buffer included.
  long long GetLength();

  // The next byte, 0 to 255, or -1 at the end of the file.
  int Getc() { return cursor_ < readable_ ? buffer_[cursor_++] : GetcSlowly(); }

  // Pushes one byte back: the next read gives it, and the position counts one less. A seek forgets
  // it, a write overwrites it. Returns the byte, or -1 when nothing was pushed back: `byte` is
  // none (-1), the position is 0, or a byte waits already.
  int UnGetc(int byte) {
    // What was just read goes back by a step of the cursor.
    const bool isOwn = cursor_ - 1 < readable_ && cursor_ != returnedAt_ &&
                       byte == static_cast<int>(buffer_[cursor_ - 1]);
    if (!isOwn) return UnGetcSlowly(byte);
    returnedAt_ = --cursor_;
    end_ = false;
    return byte;
  }

  // For scanners: bytes that the next calls of Getc will give and that are in memory already. None
  // says nothing about what follows: then Getc tells. The view lives until the next other call.
  std::span<const unsigned char> Buffered() const {
    if (cursor_ >= readable_) return {};
    return {buffer_.get() + cursor_, readable_ - cursor_};
  }

  // Moves past the first `count` bytes of Buffered, as that many calls of Getc do.
  //
  // REQUIRES: count <= Buffered().size()
  void SkipBuffered(std::size_t count) { cursor_ += count; }

  static constexpr long long kNoReadEnd = std::numeric_limits<long long>::max();

  // Lets reads find the end of the file at `position`, if it is not shorter, and in front of a byte
  // that was pushed back there or beyond; writes, seeks and GetLength know nothing of it. Forgets
  // the end mark. kNoReadEnd and Open take it back.
  void SetReadEnd(long long position);

  // Reads up to the next line feed, which is left out; carriage returns and NUL bytes are ordinary.
  // False when the file had no byte left, or the system failed.
  bool ReadString(std::string& line);

  // Writes narrow text by the rules of printf and returns its length. Raises when the format cannot
  // be used.
  int Printf(const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;

  // Whether a read has come short since the last Open, Seek or UnGetc. Never raises.
  bool EndOfFile() const { return end_; }

  // Writes what rests in the buffer and closes. A failure of either raises; the file is closed all
  // the same and what rested is lost. Nothing happens on a closed file.
  void Close();

  // The same without raising; returns whether all went well. With `discard`, what rests in the
  // buffer is dropped on purpose.
  bool CloseNoThrow(bool discard) noexcept;

 private:
  template <typename T>
  static T* CheckNotNull(T* buffer) {
    if (buffer == nullptr) FailNullBuffer();
    return buffer;
  }
  [[noreturn]] static void FailNullBuffer();
  [[noreturn]] void Fail(const char* what, const std::string& reason, int line) const;
  void RequireOpen(int line) const;
  void RequireReadable() const;
  void RequireWritable() const;

  void OpenFile(const std::wstring& path, const FileMode& mode, FileSharing sharing);
  std::size_t ReadBytes(void* buffer, std::size_t count) {
    if (cursor_ >= readable_ || count > readable_ - cursor_) return ReadSlowly(buffer, count);
    std::memcpy(buffer, buffer_.get() + cursor_, count);
    cursor_ += count;
    return count;
  }
  void WriteBytes(const void* bytes, std::size_t count);

  // What the short roads inside the window leave over: everything, that is.
  std::size_t ReadSlowly(void* buffer, std::size_t count);
  std::size_t ReadBeforeEnd(unsigned char* to, std::size_t count);
  long long SeekSlowly(long long offset, FileOrigin origin);
  int GetcSlowly();
  int UnGetcSlowly(int byte);

  bool HasDirtyBytes() const { return dirtyBegin_ < dirtyEnd_; }
  bool FillWindow(std::size_t wanted, std::size_t kept);
  bool ExtendWindow(long long position, std::size_t kept);
  long long WindowStartFor(long long position, std::size_t wanted);
  std::size_t ReadDirectly(unsigned char* to, std::size_t count);
  void MoveTo(long long position);
  void RestartWindow(long long position);
  void NoteWindow();
  void NoteEnds();
  void Reset();

  static constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

  std::unique_ptr<SystemFile> file_;  // null: closed
  std::wstring path_;
  bool mayRead_ = false;
  bool mayWrite_ = false;
  bool end_ = false;
  int pushedBack_ = -1;  // another byte than the file's that waits at the position; -1: none
  long long readEnd_ = kNoReadEnd;

  // The window: buffer_[0, filled_) holds the bytes of the file from windowStart_ on, the position
  // is windowStart_ + cursor_, and the bytes [dirtyBegin_, dirtyEnd_) are not written yet.
  std::unique_ptr<unsigned char[]> buffer_;
  long long windowStart_ = 0;
  std::size_t cursor_ = 0;
  std::size_t filled_ = 0;
  std::size_t readable_ = 0;           // how far reads may take straight from the buffer
  std::size_t seekable_ = 0;           // filled_, or 0 while seeks may not just move the cursor
  std::size_t returnedAt_ = kNowhere;  // the cursor when the file's own byte was pushed back there
  std::size_t dirtyBegin_ = 0;
  std::size_t dirtyEnd_ = 0;

  // What the last window tells about the next: see WindowStartFor.
  long long lastStart_ = 0;
  long long lastEnd_ = 0;
  std::size_t readAhead_ = 0;
};

}  // namespace corvel
