#include "tools/trelvo/ContainerFields.h"

#include <trelvo/BufferStream.h>
#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <sstream>

#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr std::string_view kMeasurementId = "measurementId";

/// Lists what it is handed, each with its path.
class FieldLister : public ShowWriter {
 public:
  void beginObject(std::string_view name, std::string_view className) override {
    if (m_levels.empty()) {
      m_fields.push_back({"", std::string(className), {}, 0});
      m_levels.push_back({"", false, 0});
    } else {
      open(name, std::string(className), false);
    }
  }
  void endObject() override { m_levels.pop_back(); }
  void beginList(std::string_view name, unsigned int) override { open(name, "list", true); }
  void endList() override { m_levels.pop_back(); }

  void value(std::string_view name, const ShowValue& value) override {
    if (m_levels.size() > 1 || name != "offset") {
      m_fields.push_back({path(name), shownText(value), value.value, m_fields.size()});
    }
  }

  ContainerFields take() {
    std::sort(m_fields.begin(), m_fields.end(),
              [](const ContainerField& a, const ContainerField& b) { return a.path < b.path; });
    return std::move(m_fields);
  }

 private:
  struct Level {
    std::string path;
    bool isList;
    unsigned int next;
  };

  void open(std::string_view name, std::string text, bool isList) {
    std::string full = path(name);
    m_fields.push_back({full, std::move(text), {}, m_fields.size()});
    m_levels.push_back({std::move(full), isList, 0});
  }

  std::string path(std::string_view name) {
    Level& level = m_levels.back();
    if (level.isList) {
      return level.path + "[" + std::to_string(level.next++) + "]";
    }
    return level.path + (level.path.empty() ? "" : ".") + std::string(name);
  }

  ContainerFields m_fields;
  std::vector<Level> m_levels;
};

std::string parentOf(const std::string& path) {
  const std::size_t end = path.find_last_of(".[");
  return end == std::string::npos ? std::string() : path.substr(0, end);
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::optional<double> number(const ContainerField* field) {
  double value = 0.0;
  if (field == nullptr) {
    return std::nullopt;
  }
  const char* const end = field->value.text.data() + field->value.text.size();
  const auto result = std::from_chars(field->value.text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional<double>(value)
                                                       : std::nullopt;
}

struct Point {
  double latitude;
  double longitude;
};

// The position that a coordinate belongs to.
std::optional<Point> pointOf(const ContainerFields& fields, const std::string& path) {
  constexpr std::string_view kPairs[][2] = {{"latitude", "longitude"},
                                            {"apLatitude", "apLongitude"}};
  const std::size_t dot = path.rfind('.');
  const std::size_t leaf = dot == std::string::npos ? 0 : dot + 1;
  for (const auto& [latitude, longitude] : kPairs) {
    if (path.substr(leaf) == latitude || path.substr(leaf) == longitude) {
      const std::string base = path.substr(0, leaf);
      const auto first = number(findField(fields, base + std::string(latitude)));
      const auto second = number(findField(fields, base + std::string(longitude)));
      return first && second ? std::optional<Point>({*first, *second}) : std::nullopt;
    }
  }
  return std::nullopt;
}

// On the plane that touches the ellipsoid there, as far as that is flat.
double metresBetween(const Point& a, const Point& b) {
  constexpr double kFlat = 1000.0;
  double east = 0.0;
  double north = 0.0;
  schema::Utility::degreeInMeters((a.latitude + b.latitude) / 2, east, north);
  const double turn = schema::Utility::compLonRollOver(a.longitude, b.longitude) - b.longitude;
  const double metres = std::hypot(turn * east, (a.latitude - b.latitude) * north);
  double round = 0.0;
  schema::Utility::distance(a.latitude, a.longitude, b.latitude, b.longitude, round);
  return north > 0.0 && metres < kFlat ? metres : round;
}

std::optional<double> metresApart(const ContainerFields& left, const ContainerFields& right,
                                  const std::string& path) {
  if (endsWith(path, "altitude")) {
    const auto a = number(findField(left, path));
    const auto b = number(findField(right, path));
    return a && b ? std::optional<double>(std::abs(*a - *b)) : std::nullopt;
  }
  const auto a = pointOf(left, path);
  const auto b = pointOf(right, path);
  return a && b ? std::optional<double>(metresBetween(*a, *b)) : std::nullopt;
}

std::string metresText(double metres) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f m apart", metres);
  return text;
}

/// Walks two sorted lists side by side. `visit` gets null for the side that lacks the path, and
/// ends the walk by false.
template <class Visit>
bool walk(const ContainerFields& left, const ContainerFields& right, Visit visit) {
  auto a = left.begin();
  auto b = right.begin();
  while (a != left.end() || b != right.end()) {
    const bool takesLeft = b == right.end() || (a != left.end() && a->path <= b->path);
    const bool takesRight = a == left.end() || (b != right.end() && b->path <= a->path);
    if (!visit(takesLeft ? &*a : nullptr, takesRight ? &*b : nullptr)) {
      return false;
    }
    a += takesLeft ? 1 : 0;
    b += takesRight ? 1 : 0;
  }
  return true;
}

bool isInsideMissing(const ContainerFields& other, const std::string& path) {
  const std::string parent = parentOf(path);
  return !parent.empty() && findField(other, parent) == nullptr;
}

}  // namespace

ContainerFields fieldsOf(const RawContainer& container) {
  BufferStream stream;
  if (!container.bytes.empty()) {
    static_cast<void>(
        stream.write(container.bytes.data(), static_cast<unsigned int>(container.bytes.size())));
  }
  const std::ostringstream unused;
  FieldLister lister;
  ShowObjects handler(lister, unused);
  WireParser parser(stream, container.offset, handler);
  static_cast<void>(parser.parseObject());
  return lister.take();
}

const ContainerField* findField(const ContainerFields& fields, std::string_view path) {
  const auto found = std::lower_bound(
      fields.begin(), fields.end(), path,
      [](const ContainerField& field, std::string_view wanted) { return field.path < wanted; });
  return found != fields.end() && found->path == path ? &*found : nullptr;
}

std::vector<FieldDifference> FieldComparison::differences(const ContainerFields& left,
                                                          const ContainerFields& right) const {
  std::vector<std::pair<std::size_t, FieldDifference>> found;
  walk(left, right, [&](const ContainerField* a, const ContainerField* b) {
    if (a != nullptr && b != nullptr) {
      if (!isEqual(left, right, *a, *b)) {
        found.emplace_back(a->place, described(left, right, *a, *b));
      }
    } else if (b != nullptr && !isInsideMissing(left, b->path)) {
      found.emplace_back(left.size() + b->place, FieldDifference{b->path, "", b->text, ""});
    } else if (a != nullptr && !isInsideMissing(right, a->path)) {
      found.emplace_back(a->place, FieldDifference{a->path, a->text, "", ""});
    }
    return true;
  });
  std::sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<FieldDifference> ordered;
  ordered.reserve(found.size());
  for (auto& [place, difference] : found) {
    ordered.push_back(std::move(difference));
  }
  return ordered;
}

bool FieldComparison::isSame(const ContainerFields& left, const ContainerFields& right) const {
  return walk(left, right, [&](const ContainerField* a, const ContainerField* b) {
    const bool isEqualHere = a != nullptr && b != nullptr && isEqual(left, right, *a, *b);
    const ContainerField* const present = a != nullptr ? a : b;
    return isEqualHere || (present != nullptr && present->path == kMeasurementId);
  });
}

bool FieldComparison::isEqual(const ContainerFields& left, const ContainerFields& right,
                              const ContainerField& a, const ContainerField& b) const {
  if (a.text == b.text) {
    return true;
  }
  if (m_tolerance <= 0.0) {
    return false;
  }
  const auto metres = metresApart(left, right, a.path);
  return metres && *metres <= m_tolerance;
}

FieldDifference FieldComparison::described(const ContainerFields& left,
                                           const ContainerFields& right, const ContainerField& a,
                                           const ContainerField& b) const {
  const auto metres = metresApart(left, right, a.path);
  return {a.path, a.text, b.text, metres ? metresText(*metres) : ""};
}

}  // namespace trelvo::tool
