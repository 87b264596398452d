#include "tools/trelvo/TextFile.h"

#include "tools/trelvo/DescriptorBuffer.h"
#include "tools/trelvo/OutputFile.h"

namespace trelvo::tool {

void writeTextFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
  OutputFile file(path);
  DescriptorBuffer buffer(file.descriptor());
  std::ostream out(&buffer);
  write(out);
  out.flush();
  if (buffer.error() != 0) {
    throwWriteFailure(buffer.stream(), path);
  }
  file.commit();
}

}  // namespace trelvo::tool
