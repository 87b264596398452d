#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>

namespace trelvo::schema {

/// What the serving cell injections of all radio technologies do; `Traits` says how they differ:
/// the object keys (`kObjectKey`, `kNeighborObjectKey`) and the classes of the cell's identity
/// (`Dn`) and of its measurement (`Measurement`).
///
/// Applications use the class of their technology, GeranServingCellInjection and the like. Bits and
/// properties are documented there.
template <class Traits>
class TRELVO_EXPORT ServingCellInjection : public GenericObjectWrapper {
 public:
  /// The class of the cell's identity.
  using Dn = typename Traits::Dn;
  /// The class of the cell's measurement.
  using Measurement = typename Traits::Measurement;

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7F, true for 0.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The property as that class; empty when it is absent or another class.
  gom::SharedPointer<Dn> dn() const;
  gom::SharedPointer<Measurement> servingCellMeasurement() const;
  gom::SharedPointer<Area> coverage() const;

  /// Wraps a new object. @return false when memory runs out.
  bool baseCreate();
  /// Wraps a new object with these properties. @return false when memory runs out, and for an empty
  /// `dn`.
  bool baseCreate(const gom::SharedPointer<Dn>& dn, unsigned int timeStamp);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
