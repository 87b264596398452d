#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// Stands in the CDMA classes where the other radio technologies tell cells apart on the air. It
/// has no field: every two are equal, unless an extension tells them apart.
///
/// A flat record of class id 123, always two bytes on the wire: the version and a mask of 0. Any
/// other mask is refused on reading.
///
/// Threads: one at a time.
class TRELVO_EXPORT CdmaFrequencyInfo : public gom::ObjectBase {
 public:
  /// Nothing to set.
  CdmaFrequencyInfo();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaFrequencyInfo> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CdmaFrequencyInfo> create(
      const gom::SharedPointer<CdmaFrequencyInfo>& other);

  void dump() const override;
  [[nodiscard]] CdmaFrequencyInfo* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const CdmaFrequencyInfo& other) const;
  bool operator!=(const CdmaFrequencyInfo& other) const { return !(*this == other); }

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;
};

}  // namespace trelvo::schema
