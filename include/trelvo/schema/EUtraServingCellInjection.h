#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/ServingCellInjection.h>
#include <trelvo/schema/Source.h>

namespace trelvo::schema {

/// How the serving cell injection of E-UTRA differs from the others.
struct TRELVO_EXPORT EUtraServingCellInjectionTraits {
  static constexpr unsigned short kObjectKey = 15;
  static constexpr unsigned short kNeighborObjectKey = 16;
  using Dn = EUtraCellDn;
  using Measurement = EUtraServingCellMeasurement;
};

extern template class ServingCellInjection<EUtraServingCellInjectionTraits>;

/// What stands behind a EUtraServingCellInjection.
class TRELVO_EXPORT EUtraServingCellInjectionImpl
    : public ServingCellInjection<EUtraServingCellInjectionTraits> {
 public:
  ~EUtraServingCellInjectionImpl() override;
};

/// A statement about a E-UTRA cell; see GeranServingCellInjection for the idea, the bits and the
/// property keys. Here the object key is 15, the identity a EUtraCellDn, the measurement a
/// EUtraServingCellMeasurement.
///
/// Threads: one at a time, together with all views of the same object.
class TRELVO_EXPORT EUtraServingCellInjection : public gom::ReferenceCountable {
 public:
  enum : unsigned int {
    HasDn = 0x01,
    HasTimeStamp = 0x02,
    HasServingCellMeasurement = 0x04,
    HasSource = 0x08,
    HasCoverage = 0x10,
    HasNeighborCellInjectionCollection = 0x20,
    HasUnreliableStateTimeStamp = 0x40,
  };

  /// Takes a share of `implementation`. Applications use create().
  explicit EUtraServingCellInjection(
      const gom::SharedPointer<EUtraServingCellInjectionImpl>& implementation);
  ~EUtraServingCellInjection() override;

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraServingCellInjection> create();
  /// A statement with a cell and a time stamp; an empty handle when `dn` is empty or memory runs
  /// out.
  [[nodiscard]] static gom::SharedPointer<EUtraServingCellInjection> create(
      const gom::SharedPointer<EUtraCellDn>& dn, unsigned int timeStamp);
  /// A further view of `object`; an empty handle when it is empty or not of key 15.
  [[nodiscard]] static gom::SharedPointer<EUtraServingCellInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  EUtraServingCellInjection(const EUtraServingCellInjection& other);
  /// Shows the other's object from now on. When memory runs out, this statement is left without an
  /// object: getters then give 0 or an empty handle, setters StatusFailed.
  EUtraServingCellInjection& operator=(const EUtraServingCellInjection& other);

  /// The generic object, shared; this is what an Injection takes.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const;

  /// Dumps the object, which has no effect.
  void dump() const;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7F, true for 0.
  bool valueExists(unsigned int mask) const;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask);

  /// The identity of the cell; empty when absent or another class.
  gom::SharedPointer<EUtraCellDn> dn() const;
  /// An empty handle gives StatusWrongState.
  Status setDn(const gom::SharedPointer<EUtraCellDn>& dn);

  /// When the cell was seen; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// What was measured of the cell; empty when absent or another class.
  gom::SharedPointer<EUtraServingCellMeasurement> servingCellMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setServingCellMeasurement(
      const gom::SharedPointer<EUtraServingCellMeasurement>& measurement);

  /// Where the statement came from; SourceUnset when absent.
  Source source() const;
  Status setSource(Source source);

  /// What the cell covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

  /// The neighbours, each the generic object of a EUtraNeighborCellInjection; empty when absent.
  gom::SharedPointer<gom::ValueCollection> neighborCellInjectionCollection() const;
  /// Replaces the whole list, without looking into it. An empty handle gives StatusWrongState.
  Status setNeighborCellInjectionCollection(
      const gom::SharedPointer<gom::ValueCollection>& collection);
  /// Appends the generic object of a neighbour.
  /// @return StatusWrongState for an empty handle and for an object of a key other than 16;
  ///         StatusOutOfMemory. A failure changes nothing.
  Status addNeighborCellInjection(const gom::SharedPointer<gom::GenericObject>& object);

 private:
  gom::SharedPointer<EUtraServingCellInjectionImpl> m_implementation;
};

}  // namespace trelvo::schema
