#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/RawContainers.h"
#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {

/// One value of a container, or an object or list in it, by its path from the container:
/// "gnssMeasurementCollection[0].measurementData.coverage.latitude".
struct ContainerField {
  std::string path;
  std::string text;       ///< as trelvo show prints it; of an object its class
  Token value;            ///< of a value, bare
  std::size_t place = 0;  ///< in the order of the file
};

/// Everything a container holds, by path in ascending order. Where it stands in its file does not
/// belong to it.
using ContainerFields = std::vector<ContainerField>;

/// Decodes a container. Its bytes have been read as an object before.
ContainerFields fieldsOf(const RawContainer& container);

/// The field of that path, null when there is none.
const ContainerField* findField(const ContainerFields& fields, std::string_view path);

/// What one field is on both sides; an empty text: it is not there.
struct FieldDifference {
  std::string path;
  std::string left;
  std::string right;
  std::string note;  ///< how far positions lie apart
};

/// Compares containers by what their fields mean, in whatever order they stand.
class FieldComparison {
 public:
  /// Positions up to `tolerance` metres apart are equal, and so are altitudes.
  explicit FieldComparison(double tolerance) : m_tolerance(tolerance) {}

  /// The fields that differ, in the order of the left file. Of an object that the other side lacks
  /// its contents are not named.
  std::vector<FieldDifference> differences(const ContainerFields& left,
                                           const ContainerFields& right) const;

  /// Whether nothing but the measurement ids differs.
  bool isSame(const ContainerFields& left, const ContainerFields& right) const;

 private:
  bool isEqual(const ContainerFields& left, const ContainerFields& right, const ContainerField& a,
               const ContainerField& b) const;
  FieldDifference described(const ContainerFields& left, const ContainerFields& right,
                            const ContainerField& a, const ContainerField& b) const;

  double m_tolerance;
};

}  // namespace trelvo::tool
