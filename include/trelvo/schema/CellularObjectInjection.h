#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CellularObjectDn.h>

namespace trelvo::schema {

/// A statement about a whole area of cells: its name, when it was seen, and what it covers.
///
/// A composite of object key 12. It has a wire form only while no name is set: a CellularObjectDn
/// has none, so write() of an object with property 200 throws StatusInternal.
///
/// | bit | property | key |
/// |-----|----------|-----|
/// | 0x1 | dn, a CellularObjectDn | 200 |
/// | 0x2 | timeStamp, unsigned 32 | 205 |
/// | 0x4 | coverage, an Area | 204 |
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT CellularObjectInjection : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasTimeStamp = 0x2,
    HasCoverage = 0x4,
  };

  /// Without an object until it is assigned.
  CellularObjectInjection();
  CellularObjectInjection(const CellularObjectInjection& other);
  /// Shares the other's object.
  CellularObjectInjection& operator=(const CellularObjectInjection& other);

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CellularObjectInjection> create();
  /// A statement with all three properties; an empty handle when `dn` or `coverage` is empty or
  /// memory runs out.
  [[nodiscard]] static gom::SharedPointer<CellularObjectInjection> create(
      const gom::SharedPointer<CellularObjectDn>& dn, unsigned int timeStamp,
      const gom::SharedPointer<Area>& coverage);
  /// A wrapper that shares `object`; an empty handle when it is empty or not of key 12.
  [[nodiscard]] static gom::SharedPointer<CellularObjectInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  void dump() const override;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7, true for 0.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The name of the area; empty when absent or another class.
  gom::SharedPointer<CellularObjectDn> dn() const;
  /// An empty handle gives StatusWrongState.
  Status setDn(const gom::SharedPointer<CellularObjectDn>& dn);

  /// When the area was seen; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// What the area covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
