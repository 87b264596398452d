#pragma once

#include <optional>
#include <string>

#include "tools/trelvo/CommandContext.h"
#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/SealedStore.h"
#include "tools/trelvo/SealedStream.h"

namespace trelvo::tool {

/// Adds FILE, which a command cannot do without.
void addContainerFile(CLI::App& command, std::string& file);

/// The plain bytes of a file of containers: of a file or standard input as they are, or of a sealed
/// file. On a terminal it shows how far it has been read.
///
/// Reads once from front to back. Threads: one at a time.
class ContainerInput {
 public:
  /// Opens `file`, standard input when it is "-"; sealed with the key of `store` when that has a
  /// name. Progress is drawn on `context.err` when `mayShowProgress` and that is a terminal.
  ///
  /// Throws Failure when the file cannot be opened, and of a sealed one when there is no key, when
  /// it cannot be sought, and when it holds no objects under that key.
  ContainerInput(const std::string& file, const StoreOptions& store, const CommandContext& context,
                 bool mayShowProgress = true);
  ContainerInput(const ContainerInput&) = delete;
  ContainerInput& operator=(const ContainerInput&) = delete;

  /// The plain bytes; the stream belongs to this object.
  FileStream& stream() { return m_sealed ? static_cast<FileStream&>(*m_sealed) : m_file; }

  /// What messages call the input.
  const std::string& name() const { return m_name; }

  /// Wipes the line of progress, so that a message can be printed.
  void clearProgress() { m_progress.clear(); }

  /// Throws Failure: the input's name and `reason`.
  [[noreturn]] void fail(const std::string& reason) const;

 private:
  void unseal(const StoreOptions& options);

  std::string m_name;
  Store m_store;  // empty for a file that is not sealed
  DescriptorStream m_file;
  std::optional<SealedStream> m_sealed;
  Progress m_progress;
};

}  // namespace trelvo::tool
