#include "tools/trelvo/InputFile.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

DescriptorStream openInput(const std::string& name, const CommandContext& context) {
  if (name == kStandard) {
    return DescriptorStream(context.inputDescriptor);
  }
  UniqueFd file = openForReading(name.c_str());
  if (!file) {
    throw Failure(name + ": " + std::strerror(errno));
  }
  return DescriptorStream(std::move(file));
}

std::string inputName(const std::string& name) {
  return name == kStandard ? "standard input" : name;
}

}  // namespace trelvo::tool
