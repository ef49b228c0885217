// The two system calls that the libraries make by their Windows names.
#pragma once

#include <win32/WinTypes.h>

#if !defined(_WIN32)

#include <win32/Export.h>

// The ANSI code page of the process. Off Windows: the Windows number of the character set of the
// process's locale (LC_CTYPE), 65001 for UTF-8; 1252 where the locale says nothing ("C", "POSIX")
// or the set has no such number.
WIN32_API UINT GetACP();

// Makes the name of a temporary file: `path`, a separator, at most the first three characters of
// `prefix`, a number in hexadecimal, ".tmp". The contract is that of the Windows call of this name.
//
// With `unique` 0 a number is found whose file does not exist, the file is created, empty and
// readable by its owner only, and closed; no other caller can get the same name. With any other
// `unique` only the name is made, from its low 16 bits: nothing is created or tested.
//
// Returns the number, or 0 when `path` is null, is empty, is longer than MAX_PATH - 14 characters
// or cannot take the file (errno tells why); `name` is then as it was. Who gets a file deletes it.
//
// REQUIRES: `name` has room for MAX_PATH characters.
WIN32_API UINT GetTempFileNameW(const wchar_t* path, const wchar_t* prefix, UINT unique,
                                wchar_t* name);

#endif
