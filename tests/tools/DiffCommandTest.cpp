#include <gtest/gtest.h>
#include <trelvo/schema/EUtraCellMeasurement.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/tools/ContainerBytes.h"
#include "tests/tools/CryptoFixture.h"

namespace trelvo::tool {
namespace {

constexpr unsigned int kStart = 1700000000;  // 2023-11-14T22:13:20Z
constexpr int kEqual = 0;
constexpr int kDifferent = 1;
constexpr int kTrouble = 2;

// The same place each second.
Bytes at(unsigned int seconds) { return bytesAt(50.625, 11.25, kStart + seconds); }

Bytes moved(unsigned int seconds) { return bytesAt(50.625, 12.65625, kStart + seconds); }

class DiffCommand : public CryptoFixture {
 protected:
  Outcome diff(const Bytes& left, const Bytes& right, std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"diff", file("a", left), file("b", right)});
    return runTool(options);
  }

  void expectEqual(const Bytes& left, const Bytes& right,
                   const std::vector<std::string>& options = {}) const {
    const Outcome outcome = diff(left, right, options);
    EXPECT_EQ(outcome.status, kEqual);
    EXPECT_EQ(outcome.out + outcome.err, "");
  }

  void expectDifference(const Bytes& left, const Bytes& right, const std::string& text,
                        const std::vector<std::string>& options = {}) const {
    const Outcome outcome = diff(left, right, options);
    EXPECT_EQ(outcome.status, kDifferent);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, text);
  }
};

TEST_F(DiffCommand, EqualFilesGiveNoOutputAndStatusZero) {
  expectEqual(joined({at(0), at(1)}), joined({at(0), at(1)}));
  expectEqual({}, {});
}

TEST_F(DiffCommand, TheOrderOfPropertiesMeansNothing) {
  const Bytes data = Wire().value(6, 317).u32(7);
  const Bytes list = Wire().value(15, 314).u32(0);
  const Bytes head = Wire().object(1, 2);
  expectEqual(joined({head, data, list}), joined({head, list, data}));
}

TEST_F(DiffCommand, NamesTheFieldsThatDifferAsShowPrintsThem) {
  expectDifference(
      joined({at(0), at(1)}), joined({at(0), moved(2)}),
      "container 2 of A (byte 54, 2023-11-14T22:13:21Z) and 2 of B (byte 54, "
      "2023-11-14T22:13:22Z):\n"
      "  gnssMeasurementCollection[0].timeStamp: 1700000001 s "
      "(2023-11-14T22:13:21Z) | 1700000002 s (2023-11-14T22:13:22Z)\n"
      "  gnssMeasurementCollection[0].measurementData.coverage.longitude: 11.250000000 "
      "degrees (code 134217728) | 12.656250000 degrees (code 150994944), 99197.39 m "
      "apart\n"
      "1 equal, 1 different, 0 only in A, 0 only in B\n");
}

TEST_F(DiffCommand, NamesWhatOneSideLacksWithoutItsContents) {
  const auto more = containerAt(50.625, 11.25, kStart);
  addAccessPoint(*more, 1, kStart);
  expectDifference(at(0), bytesOfObject(*more),
                   "container 1 of A (byte 0, 2023-11-14T22:13:20Z) and 1 of B (byte 0, "
                   "2023-11-14T22:13:20Z):\n"
                   "  wlanMeasurementCollection: none | list\n"
                   "0 equal, 1 different, 0 only in A, 0 only in B\n");
  expectDifference(bytesOfObject(*more), at(0),
                   "container 1 of A (byte 0, 2023-11-14T22:13:20Z) and 1 of B (byte 0, "
                   "2023-11-14T22:13:20Z):\n"
                   "  wlanMeasurementCollection: list | none\n"
                   "0 equal, 1 different, 0 only in A, 0 only in B\n");
}

TEST_F(DiffCommand, NamesAFurtherElementByItsClass) {
  const auto one = containerAt(50.625, 11.25, kStart);
  addAccessPoint(*one, 1, kStart);
  const auto two = containerAt(50.625, 11.25, kStart);
  addAccessPoint(*two, 1, kStart);
  addAccessPoint(*two, 2, kStart);
  expectDifference(bytesOfObject(*one), bytesOfObject(*two),
                   "container 1 of A (byte 0, 2023-11-14T22:13:20Z) and 1 of B (byte 0, "
                   "2023-11-14T22:13:20Z):\n"
                   "  wlanMeasurementCollection[1]: none | WlanMeasurement\n"
                   "0 equal, 1 different, 0 only in A, 0 only in B\n");
}

TEST_F(DiffCommand, AnotherKindOfObjectDiffers) {
  const Bytes container = Wire().object(1, 1).value(6, 317).u32(7);
  const Bytes injection = Wire().object(5, 1).value(6, 317).u32(7);
  expectDifference(container, injection,
                   "container 1 of A (byte 0) and 1 of B (byte 0):\n"
                   "  kind: MeasurementContainer | Injection\n"
                   "0 equal, 1 different, 0 only in A, 0 only in B\n");
}

TEST_F(DiffCommand, ContainersMissingAndNewAreToldAndTheRestIsPaired) {
  expectDifference(joined({at(0), at(1), at(2), at(3)}), joined({at(0), at(2), at(3), at(4)}),
                   "container 2 of A (byte 54, 2023-11-14T22:13:21Z): only there\n"
                   "container 4 of B (byte 162, 2023-11-14T22:13:24Z): only there\n"
                   "3 equal, 0 different, 1 only in A, 1 only in B\n");
}

TEST_F(DiffCommand, AContainerChangedBesideAMissingOneIsPairedByItsTime) {
  const Outcome outcome =
      diff(joined({at(0), at(1), at(2), at(3)}), joined({at(0), moved(2), at(3)}));
  EXPECT_EQ(outcome.status, kDifferent);
  EXPECT_NE(outcome.out.find("container 2 of A (byte 54, 2023-11-14T22:13:21Z): only there\n"
                             "container 3 of A (byte 108, 2023-11-14T22:13:22Z) and 2 of B (byte "
                             "54, 2023-11-14T22:13:22Z):\n"),
            std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find("2 equal, 1 different, 1 only in A, 0 only in B\n"),
            std::string::npos);
}

TEST_F(DiffCommand, NewMeasurementIdsDoNotHideThatContainersAreTheSame) {
  const auto numbered = [](unsigned int seconds, unsigned int id) {
    const auto container = containerAt(50.625, 11.25, kStart + seconds);
    container->setMeasurementId(id);
    return bytesOfObject(*container);
  };
  const Outcome outcome = diff(joined({numbered(0, 1), numbered(1, 2), numbered(2, 3)}),
                               joined({numbered(0, 1), numbered(2, 2)}));
  EXPECT_EQ(outcome.out,
            "container 2 of A (byte 62, 2023-11-14T22:13:21Z): only there\n"
            "container 3 of A (byte 124, 2023-11-14T22:13:22Z) and 2 of B (byte 62, "
            "2023-11-14T22:13:22Z):\n"
            "  measurementId: 3 | 2\n"
            "1 equal, 1 different, 1 only in A, 0 only in B\n");
}

TEST_F(DiffCommand, ThirtyOneMissingContainersAreFoundAgain) {
  Bytes left;
  Bytes right;
  for (unsigned int i = 0; i < 100; ++i) {
    left = joined({left, at(i)});
    right = i >= 20 && i < 51 ? right : joined({right, at(i)});
  }
  const Outcome outcome = diff(left, right);
  EXPECT_NE(outcome.out.find("69 equal, 0 different, 31 only in A, 0 only in B\n"),
            std::string::npos)
      << outcome.out;
}

TEST_F(DiffCommand, PositionsWithinTheToleranceAreEqual) {
  // 0.0001 degrees of latitude are 11.12 m there, of longitude 7.08 m; codes are exact to 1 cm.
  const Bytes here = bytesAt(50.625, 11.25, kStart);
  const Bytes north = bytesAt(50.6251, 11.25, kStart);
  const Bytes east = bytesAt(50.625, 11.2501, kStart);
  expectEqual(here, north, {"--tolerance", "11.14"});
  expectEqual(here, east, {"--tolerance", "7.09"});
  EXPECT_EQ(diff(here, north, {"--tolerance", "11.10"}).status, kDifferent);
  EXPECT_EQ(diff(here, east, {"--tolerance", "7.06"}).status, kDifferent);
  EXPECT_EQ(diff(here, north).status, kDifferent);
}

TEST_F(DiffCommand, TheToleranceReachesAcrossTheDateLine) {
  expectEqual(bytesAt(10, 179.99999, kStart), bytesAt(10, -179.99999, kStart),
              {"--tolerance", "3"});
}

TEST_F(DiffCommand, TheToleranceCountsForAltitudesAndForNothingElse) {
  const auto high = [](double altitude, double speed) {
    schema::PositionEstimate fix(*schema::PositionEstimate::create(52.5, 13.5, kStart));
    fix.setAltitude(altitude);
    fix.setSpeed(speed);
    const auto container = schema::MeasurementContainer::create();
    container->addGnssMeasurement(schema::GnssMeasurement::create(fix)->wrappedObject());
    return bytesOfObject(*container);
  };
  expectEqual(high(100, 5), high(101.5, 5), {"--tolerance", "1.5"});
  EXPECT_EQ(diff(high(100, 5), high(101.5, 5), {"--tolerance", "1.4"}).status, kDifferent);
  EXPECT_EQ(diff(high(100, 5), high(100, 5.5), {"--tolerance", "100"}).status, kDifferent);
}

TEST_F(DiffCommand, ReadsSealedFilesAndStandardInput) {
  file("a", at(0));
  file("b", at(1));
  EXPECT_EQ(shell("\"$TRELVO\" seal --storage keys s a a.sealed && \"$TRELVO\" seal --storage keys "
                  "s b b.sealed")
                .status,
            0);
  EXPECT_EQ(shell("\"$TRELVO\" diff a.sealed a.sealed --sealed s --storage keys").status, kEqual);
  EXPECT_EQ(shell("\"$TRELVO\" diff a.sealed b.sealed --sealed s --storage keys").status,
            kDifferent);
  EXPECT_EQ(shell("\"$TRELVO\" diff a - < a").status, kEqual);
  EXPECT_EQ(shell("\"$TRELVO\" diff - b < a").status, kDifferent);
}

TEST_F(DiffCommand, TroubleGivesStatusTwo) {
  Bytes cut = joined({at(0), at(1)});
  cut.pop_back();
  const Outcome damaged = diff(at(0), cut);
  EXPECT_EQ(damaged.status, kTrouble);
  EXPECT_EQ(damaged.err, "trelvo: " + path("b") + ": stops at byte " + std::to_string(cut.size()) +
                             ": the input ends inside GnssMeasurementData (class 130)\n");
  const Outcome missing = runTool({"diff", file("a", at(0)), path("none")});
  EXPECT_EQ(missing.status, kTrouble);
  EXPECT_EQ(missing.err, "trelvo: " + path("none") + ": No such file or directory\n");
}

TEST_F(DiffCommand, UsageGivesStatusTwo) {
  const std::string name = file("a", at(0));
  EXPECT_EQ(runTool({"diff", "-", "-"}).status, kTrouble);
  EXPECT_EQ(runTool({"diff", name}).status, kTrouble);
  EXPECT_EQ(runTool({"diff", name, name, "--tolerance", "-1"}).status, kTrouble);
}

TEST_F(DiffCommand, HelpTellsTheExitStatus) {
  EXPECT_NE(runTool({"diff", "--help"})
                .out.find("Exit status: 0 the files are equal, 1 they differ, 2 trouble."),
            std::string::npos);
}

}  // namespace
}  // namespace trelvo::tool
