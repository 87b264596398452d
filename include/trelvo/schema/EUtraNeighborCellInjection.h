#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/NeighborCellInjection.h>

namespace trelvo::schema {

/// How the neighbour cell injection of E-UTRA differs from the others.
struct TRELVO_EXPORT EUtraNeighborCellInjectionTraits {
  static constexpr unsigned short kObjectKey = 16;
  using FrequencyInfo = EUtraFrequencyInfo;
  using Measurement = EUtraNwMeasurement;
};

extern template class NeighborCellInjection<EUtraNeighborCellInjectionTraits>;

/// What stands behind a EUtraNeighborCellInjection.
class TRELVO_EXPORT EUtraNeighborCellInjectionImpl
    : public NeighborCellInjection<EUtraNeighborCellInjectionTraits> {
 public:
  ~EUtraNeighborCellInjectionImpl() override;
};

/// A statement about a neighbour of a E-UTRA serving cell; see GeranNeighborCellInjection for the
/// idea, the bits and the property keys. Here the object key is 16, the frequency info a
/// EUtraFrequencyInfo, the measurement a EUtraNwMeasurement.
///
/// Threads: one at a time, together with all views of the same object.
class TRELVO_EXPORT EUtraNeighborCellInjection : public gom::ReferenceCountable {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasNeighborCellMeasurement = 0x2,
    HasCoverage = 0x4,
  };

  /// Takes a share of `implementation`. Applications use create().
  explicit EUtraNeighborCellInjection(
      const gom::SharedPointer<EUtraNeighborCellInjectionImpl>& implementation);
  ~EUtraNeighborCellInjection() override;

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraNeighborCellInjection> create();
  /// A statement with a frequency info; an empty handle when that is empty or memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraNeighborCellInjection> create(
      const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);
  /// A further view of `object`; an empty handle when it is empty or not of key 16.
  [[nodiscard]] static gom::SharedPointer<EUtraNeighborCellInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  EUtraNeighborCellInjection(const EUtraNeighborCellInjection& other);
  /// Shows the other's object from now on. When memory runs out, this statement is left without an
  /// object: getters then give an empty handle, setters StatusFailed.
  EUtraNeighborCellInjection& operator=(const EUtraNeighborCellInjection& other);

  /// The generic object, shared; this is what a serving cell injection takes.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const;

  /// Dumps the object, which has no effect.
  void dump() const;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7, true for 0.
  bool valueExists(unsigned int mask) const;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask);

  /// How the neighbour is known on the air; empty when absent or another class.
  gom::SharedPointer<EUtraFrequencyInfo> frequencyInfo() const;
  /// An empty handle gives StatusWrongState.
  Status setFrequencyInfo(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);

  /// What was measured of the neighbour; empty when absent or another class.
  gom::SharedPointer<EUtraNwMeasurement> neighborCellMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setNeighborCellMeasurement(const gom::SharedPointer<EUtraNwMeasurement>& measurement);

  /// What the neighbour covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  gom::SharedPointer<EUtraNeighborCellInjectionImpl> m_implementation;
};

}  // namespace trelvo::schema
