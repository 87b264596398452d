#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/NeighborCellInjection.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>

namespace trelvo::schema {

/// How the neighbour cell injection of UTRA FDD differs from the others.
struct TRELVO_EXPORT UtraFddNeighborCellInjectionTraits {
  static constexpr unsigned short kObjectKey = 10;
  using FrequencyInfo = UtraFddFrequencyInfo;
  using Measurement = UtraFddNwMeasurement;
};

extern template class NeighborCellInjection<UtraFddNeighborCellInjectionTraits>;

/// What stands behind a UtraFddNeighborCellInjection.
class TRELVO_EXPORT UtraFddNeighborCellInjectionImpl
    : public NeighborCellInjection<UtraFddNeighborCellInjectionTraits> {
 public:
  ~UtraFddNeighborCellInjectionImpl() override;
};

/// A statement about a neighbour of a UTRA FDD serving cell; see GeranNeighborCellInjection for the
/// idea, the bits and the property keys. Here the object key is 10, the frequency info a
/// UtraFddFrequencyInfo, the measurement a UtraFddNwMeasurement.
///
/// Threads: one at a time, together with all views of the same object.
class TRELVO_EXPORT UtraFddNeighborCellInjection : public gom::ReferenceCountable {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasNeighborCellMeasurement = 0x2,
    HasCoverage = 0x4,
  };

  /// Takes a share of `implementation`. Applications use create().
  explicit UtraFddNeighborCellInjection(
      const gom::SharedPointer<UtraFddNeighborCellInjectionImpl>& implementation);
  ~UtraFddNeighborCellInjection() override;

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCellInjection> create();
  /// A statement with a frequency info; an empty handle when that is empty or memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCellInjection> create(
      const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);
  /// A further view of `object`; an empty handle when it is empty or not of key 10.
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCellInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  UtraFddNeighborCellInjection(const UtraFddNeighborCellInjection& other);
  /// Shows the other's object from now on. When memory runs out, this statement is left without an
  /// object: getters then give an empty handle, setters StatusFailed.
  UtraFddNeighborCellInjection& operator=(const UtraFddNeighborCellInjection& other);

  /// The generic object, shared; this is what a serving cell injection takes.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const;

  /// Dumps the object, which has no effect.
  void dump() const;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7, true for 0.
  bool valueExists(unsigned int mask) const;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask);

  /// How the neighbour is known on the air; empty when absent or another class.
  gom::SharedPointer<UtraFddFrequencyInfo> frequencyInfo() const;
  /// An empty handle gives StatusWrongState.
  Status setFrequencyInfo(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

  /// What was measured of the neighbour; empty when absent or another class.
  gom::SharedPointer<UtraFddNwMeasurement> neighborCellMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setNeighborCellMeasurement(const gom::SharedPointer<UtraFddNwMeasurement>& measurement);

  /// What the neighbour covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  gom::SharedPointer<UtraFddNeighborCellInjectionImpl> m_implementation;
};

}  // namespace trelvo::schema
