#include <trelvo/core/CrtVariants.h>

#include <cstdarg>
#include <cstdio>

namespace trelvo::core {

int CrtVariants::sprintf(char* buffer, unsigned int size, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, size, format, arguments);
  va_end(arguments);
  return length;
}

}  // namespace trelvo::core
