#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/ServingCellInjection.h>
#include <trelvo/schema/Source.h>

namespace trelvo::schema {

/// How the serving cell injection of GERAN differs from the others.
struct TRELVO_EXPORT GeranServingCellInjectionTraits {
  static constexpr unsigned short kObjectKey = 6;
  static constexpr unsigned short kNeighborObjectKey = 9;
  using Dn = GeranCellDn;
  using Measurement = GeranServingCellMeasurement;
};

extern template class ServingCellInjection<GeranServingCellInjectionTraits>;

/// What stands behind a GeranServingCellInjection.
class TRELVO_EXPORT GeranServingCellInjectionImpl
    : public ServingCellInjection<GeranServingCellInjectionTraits> {
 public:
  ~GeranServingCellInjectionImpl() override;
};

/// A statement about a GERAN cell, as opposed to a measurement of it: the cell exists, was seen at
/// a time, covers an area, was told of by a source and has neighbours. An Injection collects them.
///
/// A view of a generic object of key 6: any number of views of one object show one state, and the
/// object outlives them where a list or wrappedObject() holds it. Its wire form is the object's.
///
/// | bit  | property | key |
/// |------|----------|-----|
/// | 0x01 | dn, a GeranCellDn | 200 |
/// | 0x02 | timeStamp, unsigned 32 | 205 |
/// | 0x04 | servingCellMeasurement, a GeranServingCellMeasurement | 202 |
/// | 0x08 | source, unsigned 32 | 208 |
/// | 0x10 | coverage, an Area | 204 |
/// | 0x20 | neighborCellInjectionCollection, a list of generic objects | 307 |
/// | 0x40 | unreliableStateTimeStamp, unsigned 32 | 207 |
///
/// The last one has accessors on the UTRA classes only; its bit is served by all.
///
/// Threads: one at a time, together with all views of the same object.
class TRELVO_EXPORT GeranServingCellInjection : public gom::ReferenceCountable {
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
  explicit GeranServingCellInjection(
      const gom::SharedPointer<GeranServingCellInjectionImpl>& implementation);
  ~GeranServingCellInjection() override;

  /// An empty statement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranServingCellInjection> create();
  /// A statement with a cell and a time stamp; an empty handle when `dn` is empty or memory runs
  /// out.
  [[nodiscard]] static gom::SharedPointer<GeranServingCellInjection> create(
      const gom::SharedPointer<GeranCellDn>& dn, unsigned int timeStamp);
  /// A further view of `object`; an empty handle when it is empty or not of key 6.
  [[nodiscard]] static gom::SharedPointer<GeranServingCellInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  GeranServingCellInjection(const GeranServingCellInjection& other);
  /// Shows the other's object from now on. When memory runs out, this statement is left without an
  /// object: getters then give 0 or an empty handle, setters StatusFailed.
  GeranServingCellInjection& operator=(const GeranServingCellInjection& other);

  /// The generic object, shared; this is what an Injection takes.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const;

  /// Dumps the object, which has no effect.
  void dump() const;
  /// Whether every property named by `mask` exists; false for a bit outside 0x7F, true for 0.
  bool valueExists(unsigned int mask) const;
  /// Removes the properties named by `mask`; other bits are ignored.
  void unset(unsigned int mask);

  /// The identity of the cell; empty when absent or another class.
  gom::SharedPointer<GeranCellDn> dn() const;
  /// An empty handle gives StatusWrongState.
  Status setDn(const gom::SharedPointer<GeranCellDn>& dn);

  /// When the cell was seen; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// What was measured of the cell; empty when absent or another class.
  gom::SharedPointer<GeranServingCellMeasurement> servingCellMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setServingCellMeasurement(
      const gom::SharedPointer<GeranServingCellMeasurement>& measurement);

  /// Where the statement came from; SourceUnset when absent.
  Source source() const;
  Status setSource(Source source);

  /// What the cell covers; empty when absent or another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

  /// The neighbours, each the generic object of a GeranNeighborCellInjection; empty when absent.
  gom::SharedPointer<gom::ValueCollection> neighborCellInjectionCollection() const;
  /// Replaces the whole list, without looking into it. An empty handle gives StatusWrongState.
  Status setNeighborCellInjectionCollection(
      const gom::SharedPointer<gom::ValueCollection>& collection);
  /// Appends the generic object of a neighbour.
  /// @return StatusWrongState for an empty handle and for an object of a key other than 9;
  ///         StatusOutOfMemory. A failure changes nothing.
  Status addNeighborCellInjection(const gom::SharedPointer<gom::GenericObject>& object);

 private:
  gom::SharedPointer<GeranServingCellInjectionImpl> m_implementation;
};

}  // namespace trelvo::schema
