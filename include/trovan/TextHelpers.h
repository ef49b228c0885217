// What filters of text files share: is it text at all, how does it begin, how does the user write
// numbers.
//
//   ReadCharsAtBeginningOfFile(L"towns.txt", 4);       // {'N', 'A', 'M', 'E'}
//   ConvertNumericToAppLocale(L"1.5,2.5");             // L"1,5;2,5" for a German user
//   ReplaceCertainCharsInString("a,b\n", nullptr, ' ');  // "a b "
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <corvel/BufferedFile.h>

#include <trovan/Export.h>

namespace trovan {

// Whether one of the next `count` bytes of the file is NUL. Nothing else counts: UTF-16 is binary,
// and so is no text without such a byte, nor a file that has ended. The position stays.
//
// What the file raises comes through: gsl::fail_fast for a count of 0, too.
TROVAN_API bool IsBinary(corvel::CBufferedFile& file, unsigned int count);

// The first `count` bytes of a file, or as many as it has; none when it cannot be read, or when
// there is not the memory for `count` bytes. Never raises.
TROVAN_API std::vector<char> ReadCharsAtBeginningOfFile(const std::wstring& path,
                                                        std::size_t count);
TROVAN_API std::vector<unsigned char> ReadBytesAtBeginningOfFile(const std::wstring& path,
                                                                 std::size_t count);

// A number, or several with commas between, in the user's notation: the points become the user's
// decimal character (corvel::CSystemInfo), the commas semicolons. Nothing changes where the user
// writes a point.
TROVAN_API std::wstring ConvertNumericToAppLocale(const std::wstring& text);

// The way back: semicolons become commas, the user's decimal characters points.
TROVAN_API std::wstring ConvertNumericFromAppLocale(const std::wstring& text);

// The text with `replacement` in the place of each character that is one of `chars`. A null pointer
// stands for what would break a line of comma-separated values: carriage return, line feed, comma,
// double quote and apostrophe.
TROVAN_API std::string ReplaceCertainCharsInString(const std::string& text, const char* chars,
                                                   char replacement);
TROVAN_API std::wstring ReplaceCertainCharsInString(const std::wstring& text, const wchar_t* chars,
                                                    wchar_t replacement);

}  // namespace trovan
