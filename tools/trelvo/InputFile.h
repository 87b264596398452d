#pragma once

#include <string>

#include "tools/trelvo/CommandContext.h"
#include "tools/trelvo/DescriptorStream.h"

namespace trelvo::tool {

/// The name that stands for standard input or output.
constexpr const char* kStandard = "-";

/// Opens `name` for reading, standard input when it is "-". Throws Failure.
DescriptorStream openInput(const std::string& name, const CommandContext& context);

/// What messages call the input `name`.
std::string inputName(const std::string& name);

}  // namespace trelvo::tool
