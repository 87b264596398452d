#include "tools/trelvo/ImportCounts.h"

#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>

#include <iterator>
#include <tuple>

namespace trelvo::tool {

namespace {

using schema::MeasurementContainer;

constexpr const char* kNames[] = {"GNSS", "GERAN", "UTRA FDD", "E-UTRA", "WLAN"};
constexpr const char* kCellNames[] = {"GERAN", "UTRA FDD", "E-UTRA", "CDMA"};

std::string counted(unsigned long long count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

unsigned long long elements(const gom::SharedPointer<gom::ValueCollection>& collection) {
  return collection ? collection->count() : 0;
}

template <class Cell>
unsigned long long neighbours(const MeasurementContainer& container, unsigned long long cells,
                              gom::SharedPointer<Cell> (MeasurementContainer::*item)(unsigned int)
                                  const) {
  unsigned long long sum = 0;
  for (unsigned int i = 0; i < cells; ++i) {
    sum += elements((container.*item)(i)->nwMeasurementCollection());
  }
  return sum;
}

}  // namespace

void ImportCounts::add(const MeasurementContainer& container) {
  const auto geran = elements(container.geranMeasurementCollection());
  const auto utra = elements(container.utraFddMeasurementCollection());
  const auto eutra = elements(container.eutraMeasurementCollection());
  const std::array<Count, 5> found = {{
      {elements(container.gnssMeasurementCollection()), 0},
      {geran, neighbours(container, geran, &MeasurementContainer::geranMeasurement)},
      {utra, neighbours(container, utra, &MeasurementContainer::utraFddMeasurement)},
      {eutra, neighbours(container, eutra, &MeasurementContainer::eutraMeasurement)},
      {elements(container.wlanMeasurementCollection()), 0},
  }};
  ++m_containers;
  for (size_t i = 0; i < found.size(); ++i) {
    m_counts[i].measurements += found[i].measurements;
    m_counts[i].neighbours += found[i].neighbours;
  }
}

void ImportCounts::add(const schema::Injection& injection) {
  const gom::SharedPointer<gom::ValueCollection> found[] = {
      injection.geranInjectionCollection(), injection.utraFddInjectionCollection(),
      injection.eutraInjectionCollection(), injection.cdmaInjectionCollection()};
  static_assert(std::size(found) == std::tuple_size_v<decltype(m_cells)>);
  ++m_injections;
  for (size_t i = 0; i < m_cells.size(); ++i) {
    m_cells[i] += elements(found[i]);
  }
}

std::string ImportCounts::text() const {
  if (m_injections == 0) {
    return containersText();
  }
  const std::string injections = injectionsText();
  return m_containers == 0 ? injections : containersText() + "; " + injections;
}

std::string ImportCounts::containersText() const {
  std::string text = counted(m_containers, "container");
  const char* separator = ": ";
  for (size_t i = 0; i < m_counts.size(); ++i) {
    if (m_counts[i].measurements > 0) {
      text += separator + std::to_string(m_counts[i].measurements) + " " + kNames[i];
      separator = ", ";
    }
    if (m_counts[i].neighbours > 0) {
      text += " (" + std::to_string(m_counts[i].neighbours) + " neighbours)";
    }
  }
  return text;
}

std::string ImportCounts::injectionsText() const {
  std::string text = counted(m_injections, "injection");
  const char* separator = ": ";
  for (size_t i = 0; i < m_cells.size(); ++i) {
    if (m_cells[i] > 0) {
      text += separator + std::to_string(m_cells[i]) + " " + kCellNames[i];
      separator = ", ";
    }
  }
  return text;
}

}  // namespace trelvo::tool
