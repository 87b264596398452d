#pragma once

#include <string>
#include <string_view>

#include "tools/trelvo/Feature.h"

namespace trelvo::tool {

/// Degrees with nine decimals, a tenth of a millimetre, and never with an exponent.
std::string degreesText(double degrees);

/// `text` as a field of CSV (RFC 4180), quoted where it has to be.
std::string csvText(std::string_view text);

/// The members `"name":value` of a feature's JSON object, without braces: what it is and where it
/// stands, then its fields.
std::string jsonMembers(const Feature& feature);

/// What a map calls the feature: the identity of its cell or access point, else its kind.
std::string featureName(const Feature& feature);

/// The fields in words, "mcc 262, mnc 1", without position and time.
std::string featureDescription(const Feature& feature);

}  // namespace trelvo::tool
