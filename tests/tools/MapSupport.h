#pragma once

#include <gtest/gtest.h>
#include <trelvo/BufferStream.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/WlanInjection.h>

#include <functional>
#include <regex>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {

template <class Written>
Bytes wireOf(const Written& object) {
  BufferStream stream;
  EXPECT_TRUE(object.write(stream));
  Bytes bytes(stream.buffer().size());
  EXPECT_EQ(stream.read(bytes.data(), stream.buffer().size()), bytes.size());
  return bytes;
}

/// A container with one fix at a coverage.
inline Bytes fixAt(const schema::Coverage& coverage, unsigned int timeStamp = 1700000000) {
  const auto container = schema::MeasurementContainer::create();
  const auto data = schema::GnssMeasurementData::create(coverage);
  const auto fix = schema::GnssMeasurement::create(timeStamp, data);
  EXPECT_EQ(container->addGnssMeasurement(fix->wrappedObject()), StatusOk);
  return wireOf(*container);
}

inline schema::Coverage circleAt(double latitude, double longitude, float radius) {
  return schema::Coverage(schema::Utility::latitude(latitude),
                          schema::Utility::longitude(longitude), radius);
}

inline schema::Coverage ellipseAt(double latitude, double longitude, unsigned int majorAxis,
                                  unsigned int minorAxis, double degrees) {
  return schema::Coverage(schema::Utility::latitude(latitude),
                          schema::Utility::longitude(longitude), majorAxis, minorAxis,
                          static_cast<float>(schema::Utility::toRadians(degrees)));
}

/// A container for each of `count` positions, one a second.
inline Bytes track(unsigned int count,
                   const std::function<schema::Coverage(unsigned int)>& coverageOf) {
  Bytes bytes;
  for (unsigned int i = 0; i < count; ++i) {
    const Bytes one = fixAt(coverageOf(i), 1700000000 + i);
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  return bytes;
}

/// An injection of one access point with a coverage.
inline Bytes accessPointAt(const schema::Coverage& coverage, unsigned long long bssid) {
  const auto injection = schema::Injection::create();
  const auto access = schema::WlanInjection::create(schema::WlanDn::create(bssid), 1700000000,
                                                    schema::Area::create(coverage));
  EXPECT_EQ(injection->addWlanInjection(access->wrappedObject()), StatusOk);
  return wireOf(*injection);
}

/// An injection of one E-UTRA cell with a coverage.
inline Bytes cellAt(const schema::Coverage& coverage, unsigned int ucid) {
  const auto injection = schema::Injection::create();
  const auto cell = schema::EUtraServingCellInjection::create(
      schema::EUtraCellDn::create(262, 7, ucid), 1700000000);
  EXPECT_EQ(cell->setCoverage(schema::Area::create(coverage)), StatusOk);
  EXPECT_EQ(injection->addEUtraInjection(cell->wrappedObject()), StatusOk);
  return wireOf(*injection);
}

/// The numbers in a text, in their order.
inline std::vector<double> numbersIn(const std::string& text) {
  static const std::regex kNumber("-?[0-9]+(\\.[0-9]+)?");
  std::vector<double> numbers;
  for (std::sregex_iterator i(text.begin(), text.end(), kNumber), end; i != end; ++i) {
    numbers.push_back(std::stod(i->str()));
  }
  return numbers;
}

/// What stands between `before` and the next `after` in `text`, empty when it does not occur.
inline std::string between(const std::string& text, const std::string& before,
                           const std::string& after) {
  const std::size_t start = text.find(before);
  if (start == std::string::npos) {
    return "";
  }
  const std::size_t begin = start + before.size();
  return text.substr(begin, text.find(after, begin) - begin);
}

}  // namespace trelvo::tool
