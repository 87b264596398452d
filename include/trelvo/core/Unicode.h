#pragma once

#include <string>

#include <trelvo/Export.h>

namespace trelvo::core {

/// Conversion between bytes and wide characters by the C library's `mbstowcs` and `wcstombs`.
///
/// The bytes are in the encoding of the process's locale, so they are UTF-8 only after the
/// application has called `setlocale` for a UTF-8 locale, "C.UTF-8" for one. The library sets none,
/// and a process starts in "C", which holds ASCII.
///
/// Text ends at its first NUL, and at the stated length otherwise; nothing behind is read. The
/// three forms differ only in where the length comes from: the string, the terminating NUL, the
/// argument.
///
/// @return true with the result in `out`; a null pointer or a length of 0 empties it and is true
///         too. False with `out` unchanged when the text begins with a NUL, holds what the locale
///         cannot express, ends within a character, or memory runs out.
/// Threads: any, as long as nobody changes the locale.
class TRELVO_EXPORT Unicode {
 public:
  Unicode() = delete;

  /// Bytes to wide characters; a length counts bytes.
  static bool convertFromUtf8ToUnicode(const std::string& s, std::wstring& out);
  static bool convertFromUtf8ToUnicode(const char* s, std::wstring& out);
  static bool convertFromUtf8ToUnicode(const char* s, unsigned int length, std::wstring& out);

  /// Wide characters to bytes; a length counts wide characters.
  static bool convertFromUnicodeToUtf8(const std::wstring& s, std::string& out);
  static bool convertFromUnicodeToUtf8(const wchar_t* s, std::string& out);
  static bool convertFromUnicodeToUtf8(const wchar_t* s, unsigned int length, std::string& out);
};

}  // namespace trelvo::core
