#include <trelvo/core/Unicode.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

namespace trelvo::core {

namespace {

constexpr std::size_t kNotExpressible = static_cast<std::size_t>(-1);

std::size_t lengthWithin(const char* s, std::size_t limit) { return strnlen(s, limit); }
std::size_t lengthWithin(const wchar_t* s, std::size_t limit) { return wcsnlen(s, limit); }

std::size_t convertTerminated(wchar_t* target, const char* s, std::size_t limit) {
  return std::mbstowcs(target, s, limit);
}
std::size_t convertTerminated(char* target, const wchar_t* s, std::size_t limit) {
  return std::wcstombs(target, s, limit);
}

template <class From, class To>
bool convertText(const From* s, std::size_t length, std::basic_string<To>& out) {
  const std::basic_string<From> text(s, lengthWithin(s, length));
  const std::size_t size = convertTerminated(static_cast<To*>(nullptr), text.c_str(), 0);
  if (size == 0 || size == kNotExpressible) {
    return false;
  }
  // The limit counts what is written: exactly the result, without a terminator.
  std::basic_string<To> result(size, To());
  const bool converted = convertTerminated(result.data(), text.c_str(), size) == size;
  if (converted) {
    out = std::move(result);
  }
  return converted;
}

template <class From, class To>
bool convert(const From* s, std::size_t length, std::basic_string<To>& out) {
  if (s == nullptr || length == 0) {
    out.clear();
    return true;
  }
  try {
    return convertText(s, length, out);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

bool Unicode::convertFromUtf8ToUnicode(const std::string& s, std::wstring& out) {
  return convert(s.c_str(), s.size(), out);
}

bool Unicode::convertFromUtf8ToUnicode(const char* s, std::wstring& out) {
  return convert(s, s == nullptr ? 0 : std::strlen(s), out);
}

bool Unicode::convertFromUtf8ToUnicode(const char* s, unsigned int length, std::wstring& out) {
  return convert(s, length, out);
}

bool Unicode::convertFromUnicodeToUtf8(const std::wstring& s, std::string& out) {
  return convert(s.c_str(), s.size(), out);
}

bool Unicode::convertFromUnicodeToUtf8(const wchar_t* s, std::string& out) {
  return convert(s, s == nullptr ? 0 : std::wcslen(s), out);
}

bool Unicode::convertFromUnicodeToUtf8(const wchar_t* s, unsigned int length, std::string& out) {
  return convert(s, length, out);
}

}  // namespace trelvo::core
