#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>

namespace trelvo::schema {

/// What the neighbour cell injections of all radio technologies do; `Traits` says how they differ:
/// the object key (`kObjectKey`) and the classes of the frequency info (`FrequencyInfo`) and of the
/// measurement (`Measurement`).
///
/// Applications use the class of their technology, GeranNeighborCellInjection and the like. Bits
/// and properties are documented there.
template <class Traits>
class TRELVO_EXPORT NeighborCellInjection : public GenericObjectWrapper {
 public:
  /// The class of the neighbour's frequency info.
  using FrequencyInfo = typename Traits::FrequencyInfo;
  /// The class of the neighbour's measurement.
  using Measurement = typename Traits::Measurement;

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7, true for 0.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The property as that class; empty when it is absent or another class.
  gom::SharedPointer<FrequencyInfo> frequencyInfo() const;
  gom::SharedPointer<Measurement> neighborCellMeasurement() const;
  gom::SharedPointer<Area> coverage() const;

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
