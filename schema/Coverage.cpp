#include <trelvo/schema/Coverage.h>

#include <memory>

#include <trelvo/schema/Area.h>

#include "objects/FieldTable.h"
#include "objects/MakeObject.h"
#include "objects/Saturate.h"
#include "schema/ClassIds.h"
#include "schema/Records.h"

namespace trelvo::schema {

namespace {

// What an Area does not let through.
constexpr unsigned int kHiddenBits = Coverage::HasHorizontalCepUncertainty;

template <class T>
Status store(Coverage& coverage, unsigned int bit, T& field, T value) {
  field = value;
  coverage.valueSet(bit);
  return StatusOk;
}

// The difference counts in whole units: what is cut off to 0, a NaN too, is no difference.
bool nearlyEqual(float a, float b) { return saturate<int>(a - b) == 0; }

}  // namespace

struct Coverage::Fields
    : gom::FieldTable<
          gom::Mask16,  // wire order
          gom::Field<HasLatitude, &Coverage::m_latitude>,
          gom::Field<HasLongitude, &Coverage::m_longitude>,
          gom::Field<HasMajorAxis, &Coverage::m_majorAxis>,
          gom::Field<HasMinorAxis, &Coverage::m_minorAxis>,
          gom::Field<HasAngle, &Coverage::m_angle>, gom::Field<HasAltitude, &Coverage::m_altitude>,
          gom::Field<HasAltitudeUncertainty, &Coverage::m_altitudeUncertainty>,
          gom::Field<HasHorizontalCepUncertainty, &Coverage::m_horizontalCepUncertainty>> {};

Coverage::Coverage(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis,
                   float angle, float altitude, float altitudeUncertainty)
    : m_mask(HasLatitude | HasLongitude | HasMajorAxis | HasMinorAxis | HasAngle | HasAltitude |
             HasAltitudeUncertainty),
      m_latitude(latitude),
      m_longitude(longitude),
      m_majorAxis(majorAxis),
      m_minorAxis(minorAxis),
      m_angle(angle),
      m_altitude(altitude),
      m_altitudeUncertainty(altitudeUncertainty) {}

Coverage::Coverage(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis,
                   float angle)
    : m_mask(HasLatitude | HasLongitude | HasMajorAxis | HasMinorAxis | HasAngle),
      m_latitude(latitude),
      m_longitude(longitude),
      m_majorAxis(majorAxis),
      m_minorAxis(minorAxis),
      m_angle(angle) {}

Coverage::Coverage(int latitude, int longitude, float horizontalCepUncertainty)
    : m_mask(HasLatitude | HasLongitude | HasHorizontalCepUncertainty),
      m_latitude(latitude),
      m_longitude(longitude),
      m_horizontalCepUncertainty(horizontalCepUncertainty) {}

bool Coverage::write(IStream& stream) const { return gom::writeRecord(*this, stream); }
bool Coverage::read(IStream& stream) { return gom::readRecord<Fields>(*this, stream); }

bool Coverage::valueExists(unsigned int mask) const { return mask != 0 && (m_mask & mask) == mask; }
bool Coverage::isEmpty() const { return m_mask == 0; }
void Coverage::unset(unsigned int mask) { m_mask &= ~mask; }
void Coverage::dump() const {}

bool Coverage::operator==(const Coverage& other) const {
  return m_mask == other.m_mask && m_latitude == other.m_latitude &&
         m_longitude == other.m_longitude && m_majorAxis == other.m_majorAxis &&
         m_minorAxis == other.m_minorAxis && nearlyEqual(m_angle, other.m_angle) &&
         nearlyEqual(m_altitude, other.m_altitude) &&
         nearlyEqual(m_altitudeUncertainty, other.m_altitudeUncertainty) &&
         nearlyEqual(m_horizontalCepUncertainty, other.m_horizontalCepUncertainty);
}

Status Coverage::setLatitude(int latitude) {
  return store(*this, HasLatitude, m_latitude, latitude);
}
Status Coverage::setLongitude(int longitude) {
  return store(*this, HasLongitude, m_longitude, longitude);
}
Status Coverage::setMajorAxis(unsigned int majorAxis) {
  return store(*this, HasMajorAxis, m_majorAxis, majorAxis);
}
Status Coverage::setMinorAxis(unsigned int minorAxis) {
  return store(*this, HasMinorAxis, m_minorAxis, minorAxis);
}
Status Coverage::setAngle(float angle) { return store(*this, HasAngle, m_angle, angle); }
Status Coverage::setAltitude(float altitude) {
  return store(*this, HasAltitude, m_altitude, altitude);
}
Status Coverage::setAltitudeUncertainty(float altitudeUncertainty) {
  return store(*this, HasAltitudeUncertainty, m_altitudeUncertainty, altitudeUncertainty);
}
Status Coverage::setHorizontalCepUncertainty(float horizontalCepUncertainty) {
  if (!(horizontalCepUncertainty >= 0.0F)) {
    return StatusInvalidParameter;
  }
  return store(*this, HasHorizontalCepUncertainty, m_horizontalCepUncertainty,
               horizontalCepUncertainty);
}

// An Area has no table of fields: all it has is its Coverage, which carries the presence bits too.

Area::Area() : ObjectBase(kArea) {}
Area::Area(const Coverage& coverage) : ObjectBase(kArea), m_coverage(coverage) {}
Area::Area(int latitude, int longitude, unsigned int majorAxis, unsigned int minorAxis, float angle)
    : Area(Coverage(latitude, longitude, majorAxis, minorAxis, angle)) {}

gom::SharedPointer<Area> Area::create() { return gom::makeObject<Area>(); }
gom::SharedPointer<Area> Area::create(const Coverage& coverage) {
  return gom::makeObject<Area>(coverage);
}
gom::SharedPointer<Area> Area::create(int latitude, int longitude, unsigned int majorAxis,
                                      unsigned int minorAxis, float angle) {
  return gom::makeObject<Area>(latitude, longitude, majorAxis, minorAxis, angle);
}
gom::SharedPointer<Area> Area::create(const gom::SharedPointer<Area>& other) {
  return gom::copyObject(other);
}

void Area::dump() const { m_coverage.dump(); }

Area* Area::clone() const {
  auto copy = std::make_unique<Area>(m_coverage);
  return copy->cloneFrom(*this) == StatusOk ? copy.release() : nullptr;
}

bool Area::compare(const gom::ObjectBase* other) const { return gom::compareRecords(*this, other); }

bool Area::valueExists(unsigned int mask) const {
  return m_coverage.valueExists(mask & ~kHiddenBits);
}
bool Area::isEmpty() const { return m_coverage.isEmpty(); }
void Area::unset(unsigned int mask) { m_coverage.unset(mask & ~kHiddenBits); }

bool Area::write(IStream& stream) const { return gom::writeRecord(*this, stream); }

bool Area::read(IStream& stream) {
  m_coverage.unset(~0U);
  WireReader reader(stream);
  return gom::RecordAccess<Area>::read(*this, reader);
}

bool Area::operator==(const Area& other) const {
  return m_coverage == other.m_coverage && ObjectBase::operator==(other);
}

Status Area::setLatitude(int latitude) { return m_coverage.setLatitude(latitude); }
Status Area::setLongitude(int longitude) { return m_coverage.setLongitude(longitude); }
Status Area::setAltitude(float altitude) { return m_coverage.setAltitude(altitude); }
Status Area::setMajorAxis(unsigned int majorAxis) { return m_coverage.setMajorAxis(majorAxis); }
Status Area::setMinorAxis(unsigned int minorAxis) { return m_coverage.setMinorAxis(minorAxis); }
Status Area::setAngle(float angle) { return m_coverage.setAngle(angle); }
Status Area::setAltitudeUncertainty(float altitudeUncertainty) {
  return m_coverage.setAltitudeUncertainty(altitudeUncertainty);
}

}  // namespace trelvo::schema

template struct trelvo::gom::RecordAccess<trelvo::schema::Coverage>;

namespace trelvo::gom {

bool RecordAccess<schema::Area>::write(const schema::Area& area, WireWriter& writer) {
  writer.advance(storeWire(writer.reserve(1), kVersion));
  return RecordAccess<schema::Coverage>::write(area.m_coverage, writer);
}

bool RecordAccess<schema::Area>::addSize(const schema::Area& area, unsigned long long& total) {
  total += 1;
  return RecordAccess<schema::Coverage>::addSize(area.m_coverage, total);
}

bool RecordAccess<schema::Area>::read(schema::Area& area, WireReader& reader) {
  return readVersion(reader) && RecordAccess<schema::Coverage>::read(area.m_coverage, reader);
}

}  // namespace trelvo::gom
