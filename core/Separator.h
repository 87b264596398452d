#pragma once

namespace trelvo::core {

/// What stands between the names of a path.
constexpr char kSeparator = '/';

}  // namespace trelvo::core
