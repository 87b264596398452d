#include <trelvo/core/IDirectory.h>

#include <utility>

#include <trelvo/core/DirectoryLinux.h>

#include "core/Separator.h"

namespace trelvo::core {

IDirectory::~IDirectory() = default;

bool IDirectory::getEntryWithPath(const std::string& path, Entry& entry) {
  const std::size_t slash = path.rfind(kSeparator);
  std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
  if (!DirectoryLinux::setEntryDetails(path.c_str(), entry)) {
    return false;
  }
  entry.name = std::move(name);
  return true;
}

void IDirectory::findEntriesStartWith(const Entries& all, const std::string& prefix,
                                      Entries& found) {
  Entry first;
  first.name = prefix;
  Entries matching;
  for (auto entry = all.lower_bound(first);
       entry != all.end() && entry->name.compare(0, first.name.size(), first.name) == 0; ++entry) {
    matching.insert(matching.end(), *entry);
  }
  found = std::move(matching);
}

}  // namespace trelvo::core
