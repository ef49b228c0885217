// The code page of a dBASE table's text: what the ".cpg" file beside it says, what its language
// driver byte means, and which of them counts.
//
//   CDBFReader reader;
//   reader.OpenFromFile(path);
//   const int page = CodePageForDBFTranslation(path, reader.LangID());  // 65001, say: UTF-8
//
// Code pages are Windows code-page numbers. In each function `path` may name the table, the
// shapefile or any other file of the set: only its extension is replaced.
#pragma once

#include <string>

#include <trovan/Export.h>

namespace trovan {

// The code page that the ".cpg" file of `path` names on its first line, as a decimal number or by
// name ("UTF-8", "OEM 866", "ISO 88591", ... in any case of letters); 0 when there is no such file
// or it names none.
//
// A number is returned as it stands, whether a code page has it or not: 0, negative numbers and
// large ones too. Text after a number is ignored; text after a name is not, nor is a blank.
TROVAN_API int CPGFileRead(const std::wstring& path);

// Writes the ".cpg" file of `path`, one line: "UTF-8" for 65001, the process's ANSI code page for
// 0, else the number. A file that is there is replaced.
//
// Raises corvel::Exception when the file cannot be created or written.
TROVAN_API void CPGFileWrite(const std::wstring& path, int codePage);

// The code page in which to read the text of the table at `path`, whose header carries the language
// driver byte `langID`.
//
// Where the file with the extension ".shp" exists, the table belongs to a shapefile: then a ".cpg"
// that names a known code page decides, else the language byte, else 1252. Any other table goes by
// its language byte alone, else by 1, the number that stands for the system's OEM code page.
//
// Raises corvel::Exception when the list of code pages lacks "Western European (Windows)": the
// installation is broken.
TROVAN_API int CodePageForDBFTranslation(const std::wstring& path, unsigned char langID);

}  // namespace trovan
