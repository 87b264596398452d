// Tells a positioning engine of a cell and its neighbours, sends that through the wire form, and
// asks how well the areas that come back agree, with each other and with what another source says.
//
//   Injection                      what is told, in one object
//   GeranServingCellInjection      one cell: identity, time, area
//   GeranNeighborCellInjection     one of its neighbours: frequency, area
//   Ellipse                        an area as the geometry takes it: centre and covariance

#include <cstdio>

#include <trelvo/trelvo.h>

namespace gom = trelvo::gom;
namespace schema = trelvo::schema;

using schema::Utility;
using trelvo::Midpoint;
using trelvo::ShapeMatrix;

namespace {

constexpr float kRadiansPerDegree = 0.01745329f;

struct Ellipse {
  Midpoint centre;
  ShapeMatrix shape;
};

// An area as statements hold it: coordinates as fixed-point codes, semi-axes in metres, the
// direction of the major one in degrees clockwise from north.
gom::SharedPointer<schema::Area> area(double latitude, double longitude, unsigned int majorAxis,
                                      unsigned int minorAxis, float degrees) {
  return schema::Area::create(Utility::latitude(latitude), Utility::longitude(longitude), majorAxis,
                              minorAxis, degrees * kRadiansPerDegree);
}

// The same area as the geometry takes it. False at the poles, and where there is none.
bool ellipse(const gom::SharedPointer<schema::Area>& area, Ellipse& result) {
  if (!area) return false;
  result.centre = {Utility::wgs84Latitude(area->latitude()),
                   Utility::wgs84Longitude(area->longitude())};
  return result.shape.ellConvert(result.centre.latitude(), area->majorAxis(), area->minorAxis(),
                                 Utility::toDegrees(area->angle()));
}

// Empty when memory runs out, as everything that a create() gives.
gom::SharedPointer<schema::GeranServingCellInjection> servingCell(
    const gom::SharedPointer<schema::Area>& covered) {
  auto cell = schema::GeranServingCellInjection::create(
      schema::GeranCellDn::create(262, 1, 0x1234, 0xA1B2), 1700000000);
  if (cell && cell->setCoverage(covered) != trelvo::StatusOk) cell.clear();
  return cell;
}

bool addNeighbour(schema::GeranServingCellInjection& cell, unsigned char bsic, unsigned short arfcn,
                  const gom::SharedPointer<schema::Area>& covered) {
  const auto neighbour =
      schema::GeranNeighborCellInjection::create(schema::GeranFrequencyInfo::create(bsic, arfcn));
  return neighbour && neighbour->setCoverage(covered) == trelvo::StatusOk &&
         cell.addNeighborCellInjection(neighbour->wrappedObject()) == trelvo::StatusOk;
}

// The first object in a list; empty when there is none.
gom::SharedPointer<gom::GenericObject> firstOf(
    const gom::SharedPointer<gom::ValueCollection>& list) {
  gom::SharedPointer<gom::GenericObject> object;
  if (list && list->count() > 0) (*list->first())->getGenericObjectValue(object);
  return object;
}

void print(const char* name, const Ellipse& e) {
  std::printf("%-10s %.5f %.5f  covariance %.3e %.3e %.3e\n", name, e.centre.latitude(),
              e.centre.longitude(), e.shape[0], e.shape[1], e.shape[2]);
}

void compare(const char* names, const Ellipse& a, const Ellipse& b) {
  std::printf("%s: %.0f m apart, Mahalanobis %.2f, Bhattacharyya %.3f, boxes %s\n", names,
              a.centre.distance(b.centre), Utility::mDistance(a.centre, a.shape, b.centre, b.shape),
              Utility::bDistance(a.centre, a.shape, b.centre, b.shape),
              Utility::intersect(a.centre, a.shape, b.centre, b.shape) ? "overlap" : "are apart");
}

}  // namespace

int main() {
  const auto cell = servingCell(area(52.5163, 13.3777, 900, 400, 30.0f));
  if (!cell || !addNeighbour(*cell, 12, 62, area(52.5208, 13.4094, 1500, 1100, 120.0f)) ||
      !addNeighbour(*cell, 13, 71, area(52.5251, 13.3694, 700, 700, 0.0f))) {
    return 1;
  }
  const auto injection = schema::Injection::create();
  trelvo::BufferStream stream;
  if (!injection || injection->addGeranInjection(cell->wrappedObject()) != trelvo::StatusOk ||
      !injection->write(stream)) {
    return 1;
  }

  const auto back = schema::Injection::create(gom::GenericObject::create(stream));
  if (!back) return 1;
  const auto heard =
      schema::GeranServingCellInjection::create(firstOf(back->geranInjectionCollection()));
  if (!heard || !heard->dn()) return 1;
  const auto neighbours = heard->neighborCellInjectionCollection();
  const auto neighbour = schema::GeranNeighborCellInjection::create(firstOf(neighbours));
  if (!neighbour) return 1;
  std::printf("%u bytes: cell %u with %u neighbours, seen at %u\n", stream.buffer().size(),
              heard->dn()->cid(), neighbours->count(),
              Utility::injectionTimeStamp(back->wrappedObject()));

  Ellipse serving, beside, rival;
  // What another source says of the same cell.
  const auto claimed = area(52.5200, 13.3900, 500, 500, 0.0f);
  if (!ellipse(heard->coverage(), serving) || !ellipse(neighbour->coverage(), beside) ||
      !ellipse(claimed, rival)) {
    return 1;
  }

  print("cell", serving);
  print("neighbour", beside);
  print("rival", rival);
  compare("cell and neighbour", serving, beside);
  compare("cell and rival", serving, rival);
}
