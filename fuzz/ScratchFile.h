#pragma once

#include <string>

#include "fuzz/Target.h"

namespace trelvo::fuzz {

/// A file that lies in memory and has a path, for readers that open their input themselves. What
/// opens the path has a position of its own.
class ScratchFile {
 public:
  ScratchFile();
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& path() const { return m_path; }

  void setContent(const Bytes& content);
  Bytes content() const;

 private:
  int m_descriptor;
  std::string m_path;
};

}  // namespace trelvo::fuzz
