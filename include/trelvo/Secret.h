#pragma once

#include <trelvo/Export.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// The pass phrase of a private key. Its text is overwritten before its memory is given back.
///
/// Threads: one at a time.
class TRELVO_EXPORT Secret : public gom::ReferenceCountable {
 public:
  /// A secret with a copy of `text`, which the caller may then wipe. Empty when memory runs out,
  /// and for null, since an empty handle is what stands for no pass phrase at all.
  [[nodiscard]] static gom::SharedPointer<Secret> create(const char* text);

  ~Secret() override;
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  /// The pass phrase, NUL-terminated; it lives as long as this object.
  const char* text() const noexcept { return m_text; }

 private:
  Secret() noexcept = default;

  char* m_text = nullptr;  // owned
};

}  // namespace trelvo
