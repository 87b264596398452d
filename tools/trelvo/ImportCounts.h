#pragma once

#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>

#include <array>
#include <string>

namespace trelvo::tool {

/// How many measurements of each kind went into containers, and how many cells into injections.
class ImportCounts {
 public:
  /// Adds what `container` holds.
  void add(const schema::MeasurementContainer& container);
  /// Adds the cells that `injection` holds.
  void add(const schema::Injection& injection);

  unsigned long long containers() const { return m_containers; }

  /// "3 containers: 2 GNSS, 1 E-UTRA (4 neighbours), 7 WLAN; 2 injections: 130 E-UTRA"; kinds that
  /// do not occur are left out.
  std::string text() const;

 private:
  struct Count {
    unsigned long long measurements = 0;
    unsigned long long neighbours = 0;
  };

  std::string containersText() const;
  std::string injectionsText() const;

  unsigned long long m_containers = 0;
  std::array<Count, 5> m_counts;
  unsigned long long m_injections = 0;
  std::array<unsigned long long, 4> m_cells{};
};

}  // namespace trelvo::tool
