#include "tools/trelvo/ExportText.h"

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <iterator>

namespace trelvo::tool {
namespace {

void appendMember(std::string& text, std::string_view name, const std::string& value) {
  text += (text.empty() ? "" : ",") + quoted(std::string(name)) + ":" + value;
}

// Joins the values of these fields; empty unless the first is there.
std::string identity(const Feature& feature, std::initializer_list<std::string_view> names) {
  std::string text;
  for (const std::string_view name : names) {
    if (const Token* token = feature.find(name)) {
      text += (text.empty() ? "" : "-") + token->text;
    }
  }
  return feature.find(*names.begin()) != nullptr ? text : std::string();
}

constexpr std::string_view kSaidElsewhere[] = {
    "latitude", "longitude", "latitudeCode", "longitudeCode", "timeStamp", "timeStampUtc", "offset",
};

bool isSaidElsewhere(const FeatureField& field) {
  return std::find(std::begin(kSaidElsewhere), std::end(kSaidElsewhere), field.name) !=
         std::end(kSaidElsewhere);
}

}  // namespace

std::string degreesText(double degrees) {
  char text[64];
  std::snprintf(text, sizeof text, "%.9f", degrees);
  return text;
}

std::string csvText(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    return std::string(text);
  }
  std::string quotedText = "\"";
  for (const char c : text) {
    quotedText.append(c == '"' ? 2 : 1, c);
  }
  return quotedText + '"';
}

std::string jsonMembers(const Feature& feature) {
  std::string text;
  appendMember(text, "kind", quoted(feature.kind));
  appendMember(text, "container", std::to_string(feature.container));
  appendMember(text, "element", std::to_string(feature.element));
  if (feature.parent != 0) {
    appendMember(text, "parent", std::to_string(feature.parent));
  }
  for (const FeatureField& field : feature.fields) {
    appendMember(text, field.name, jsonText(field.value));
  }
  return text;
}

std::string featureName(const Feature& feature) {
  for (const std::string& name :
       {identity(feature, {"bssid"}), identity(feature, {"sid", "nid", "bsid"}),
        identity(feature, {"mcc", "mnc", "lac", "cid", "ucid"})}) {
    if (!name.empty()) {
      return name;
    }
  }
  return feature.kind;
}

std::string featureDescription(const Feature& feature) {
  std::string text;
  for (const FeatureField& field : feature.fields) {
    if (!isSaidElsewhere(field)) {
      text += (text.empty() ? "" : ", ") + field.name + " " + field.value.text;
    }
  }
  return text;
}

}  // namespace trelvo::tool
