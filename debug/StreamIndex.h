#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include <trelvo/DebugCommon.h>

namespace trelvo {

/// The components of a DebugCommon by the name of their file and by their stream, so that the time
/// for a line of a configuration hardly depends on how many lines there are.
class DebugCommon::StreamIndex {
 public:
  using Components = std::map<std::string, ComponentSetting>;
  using Entry = Components::value_type;

  explicit StreamIndex(const Components& components) {
    for (const Entry& entry : components) add(entry);
  }

  /// `entry` has to stay where and as it is until it is removed.
  void add(const Entry& entry) {
    m_byName.insert(&entry);
    m_byFile.insert(&entry);
  }

  /// Passes over an entry that is not in there.
  void remove(const Entry& entry) {
    m_byName.erase(&entry);
    m_byFile.erase(&entry);
  }

  /// What addLogFile() gives.
  std::FILE* addLogFile(const std::string& name) const {
    const auto first = m_byName.lower_bound(name);
    const bool found = first != m_byName.end() && (*first)->second.fileName == name;
    return found ? (*first)->second.file : open(name);
  }

  bool holds(const std::FILE* file) const {
    const auto first = m_byFile.lower_bound(file);
    return first != m_byFile.end() && (*first)->second.file == file;
  }

  /// A stream that no component has.
  static std::FILE* open(const std::string& name);

 private:
  // Entries of the same file stand in the order of the components.
  struct ByName {
    using is_transparent = void;
    bool operator()(const Entry* a, const Entry* b) const {
      return std::tie(a->second.fileName, a->first) < std::tie(b->second.fileName, b->first);
    }
    bool operator()(const Entry* a, const std::string& name) const {
      return a->second.fileName < name;
    }
  };
  struct ByFile {
    using is_transparent = void;
    bool operator()(const Entry* a, const Entry* b) const {
      return a->second.file != b->second.file ? (*this)(a, b->second.file) : a->first < b->first;
    }
    bool operator()(const Entry* a, const std::FILE* file) const {
      return std::less<>()(static_cast<const std::FILE*>(a->second.file), file);
    }
  };

  std::set<const Entry*, ByName> m_byName;
  std::set<const Entry*, ByFile> m_byFile;
};

}  // namespace trelvo
