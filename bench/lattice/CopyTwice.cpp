// copy_twice INPUT TEMPORARY OUTPUT: copies the input to the temporary file and that to the output
// with read() and write(): the limit of whatever puts a file in another order by way of a temporary
// file. Removes the temporary file.
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

bool WriteAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(file, bytes, count);
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool Copy(const char* from, const char* to) {
  const int in = open(from, O_RDONLY | O_CLOEXEC);
  const int out = open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  bool good = in >= 0 && out >= 0;
  std::vector<char> block(kBlock);
  while (good) {
    const ssize_t got = read(in, block.data(), block.size());
    if (got == 0) break;
    good = got > 0 && WriteAll(out, block.data(), static_cast<std::size_t>(got));
  }
  if (in >= 0) close(in);
  if (out >= 0 && close(out) != 0) good = false;
  if (!good) std::perror(to);
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: copy_twice INPUT TEMPORARY OUTPUT\n", stderr);
    return 2;
  }
  const bool good = Copy(argv[1], argv[2]) && Copy(argv[2], argv[3]);
  unlink(argv[2]);
  return good ? 0 : 1;
}
