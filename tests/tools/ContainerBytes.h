#pragma once

#include <gtest/gtest.h>
#include <trelvo/BufferStream.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/WlanMeasurement.h>

#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {

/// The wire form of a container or an injection.
template <class Container>
Bytes bytesOfObject(const Container& container) {
  BufferStream stream;
  EXPECT_TRUE(container.write(stream));
  const unsigned char* data = stream.buffer().data();
  return Bytes(data, data + stream.buffer().size());
}

/// A container with one fix, without an ellipse or circle.
inline gom::SharedPointer<schema::MeasurementContainer> containerAt(double latitude,
                                                                    double longitude,
                                                                    unsigned int timeStamp) {
  const auto fix = schema::PositionEstimate::create(latitude, longitude, timeStamp);
  auto container = schema::MeasurementContainer::create();
  EXPECT_EQ(container->addGnssMeasurement(schema::GnssMeasurement::create(*fix)->wrappedObject()),
            StatusOk);
  return container;
}

inline Bytes bytesAt(double latitude, double longitude, unsigned int timeStamp) {
  return bytesOfObject(*containerAt(latitude, longitude, timeStamp));
}

/// Adds an access point heard at -60 dBm.
inline void addAccessPoint(schema::MeasurementContainer& container, unsigned char lastOfAddress,
                           unsigned int timeStamp) {
  const unsigned char address[6] = {0x02, 0x11, 0x22, 0x33, 0x44, lastOfAddress};
  const auto dn = schema::WlanDn::create();
  EXPECT_EQ(dn->setBssid(address, sizeof address), StatusOk);
  const auto heard = schema::WlanApMeasurement::create();
  heard->setRxLevel(-60);
  const auto measurement = schema::WlanMeasurement::create();
  measurement->setTimeStamp(timeStamp);
  measurement->setDn(dn);
  measurement->setWlanApMeasurement(heard);
  EXPECT_EQ(container.addWlanMeasurement(measurement->wrappedObject()), StatusOk);
}

}  // namespace trelvo::tool
