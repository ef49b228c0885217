// Writes a file and reads it back with the foundation library alone. Ends with 1 when that is not
// what was written.

#include <cstdio>
#include <cstring>

#include <corvel/BufferedFile.h>
#include <corvel/Path.h>

int main() {
  const char text[] = "corvel stands alone";
  corvel::CBufferedFile file;
  file.Open(L"corvel.txt", "w+b", corvel::kFileShareRead, false);
  file.Write(text, sizeof text);
  file.Seek(0, corvel::kFileBegin);
  char copy[sizeof text] = {};
  file.Read(copy, sizeof copy);
  file.Close();
  std::printf("%s\n", copy);
  return corvel::FileExists(L"corvel.txt") && std::memcmp(text, copy, sizeof text) == 0 ? 0 : 1;
}
