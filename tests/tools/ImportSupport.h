#pragma once

#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/PositionEstimate.h>

#include <cstddef>
#include <vector>

#include "tests/tools/ImportInput.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Keeps every container.
class KeepingTarget : public ImportTarget {
 public:
  std::vector<gom::SharedPointer<schema::MeasurementContainer>> containers;
  std::vector<gom::SharedPointer<schema::Injection>> injections;

 private:
  void take(const schema::MeasurementContainer& container) override {
    containers.push_back(schema::MeasurementContainer::create(container.wrappedObject()));
  }
  void take(const schema::Injection& injection) override {
    injections.push_back(schema::Injection::create(injection.wrappedObject()));
  }
};

/// What an import gave. A test file derives the import that it is about.
struct ImportOutcome {
  std::size_t size() const { return target.containers.size(); }
  const schema::MeasurementContainer& container(std::size_t index = 0) const {
    return *target.containers.at(index);
  }

  KeepingTarget target;
  ImportReport report;
  bool any = false;
};

/// Counts containers and forgets them.
class CountingTarget : public ImportTarget {
 private:
  void take(const schema::MeasurementContainer&) override {}
  void take(const schema::Injection&) override {}
};

/// The position of the `index`-th GNSS measurement; fails the test when there is none.
inline gom::SharedPointer<schema::PositionEstimate> positionOf(
    const schema::MeasurementContainer& container, unsigned int index = 0) {
  const auto measurement = container.gnssMeasurement(index);
  EXPECT_TRUE(measurement);
  const auto position = measurement ? measurement->toPosition() : nullptr;
  EXPECT_TRUE(position);
  return position ? position : schema::PositionEstimate::create();
}

}  // namespace trelvo::tool
