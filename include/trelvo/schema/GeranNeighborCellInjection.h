#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/NeighborCellInjection.h>

namespace trelvo::schema {

/// How the neighbour cell injection of GERAN differs from the others.
struct TRELVO_EXPORT GeranNeighborCellInjectionTraits {
  static constexpr unsigned short kObjectKey = 9;
  using FrequencyInfo = GeranFrequencyInfo;
  using Measurement = GeranNwMeasurement;
};

extern template class NeighborCellInjection<GeranNeighborCellInjectionTraits>;

/// What stands behind a GeranNeighborCellInjection.
class TRELVO_EXPORT GeranNeighborCellInjectionImpl
    : public NeighborCellInjection<GeranNeighborCellInjectionTraits> {
 public:
  ~GeranNeighborCellInjectionImpl() override;
};

/// A statement about a neighbour of a GERAN serving cell. It has no time stamp of its own: it hangs
/// in the list of a GeranServingCellInjection.
///
/// A view of a generic object of key 9: any number of views of one object show one state. Its wire
/// form is the object's.
///
/// | bit | property | key |
/// |-----|----------|-----|
/// | 0x1 | frequencyInfo, a GeranFrequencyInfo | 201 |
/// | 0x2 | neighborCellMeasurement, a GeranNwMeasurement | 203 |
/// | 0x4 | coverage, an Area | 204 |
///
/// Threads: one at a time, together with all views of the same object.
class TRELVO_EXPORT GeranNeighborCellInjection : public gom::ReferenceCountable {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasNeighborCellMeasurement = 0x2,
    HasCoverage = 0x4,
  };

  /// Takes a share of `implementation`. Applications use create().
  explicit GeranNeighborCellInjection(
      const gom::SharedPointer<GeranNeighborCellInjectionImpl>& implementation);
  ~GeranNeighborCellInjection() override;

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCellInjection> create();
  /// A statement with a frequency info; an empty handle when that is empty or memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCellInjection> create(
      const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);
  /// A further view of `object`; an empty handle when it is empty or not of key 9.
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCellInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  GeranNeighborCellInjection(const GeranNeighborCellInjection& other);
  /// Shows the other's object from now on. When memory runs out, this statement is left without an
  /// object: getters then give an empty handle, setters StatusFailed.
  GeranNeighborCellInjection& operator=(const GeranNeighborCellInjection& other);

  /// The generic object, shared; this is what a serving cell injection takes.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const;

  /// Dumps the object, which has no effect.
  void dump() const;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7, true for 0.
  bool valueExists(unsigned int mask) const;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask);

  /// How the neighbour is known on the air; empty when absent or another class.
  gom::SharedPointer<GeranFrequencyInfo> frequencyInfo() const;
  /// An empty handle gives StatusWrongState.
  Status setFrequencyInfo(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

  /// What was measured of the neighbour; empty when absent or another class.
  gom::SharedPointer<GeranNwMeasurement> neighborCellMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setNeighborCellMeasurement(const gom::SharedPointer<GeranNwMeasurement>& measurement);

  /// What the neighbour covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  gom::SharedPointer<GeranNeighborCellInjectionImpl> m_implementation;
};

}  // namespace trelvo::schema
