#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/trelvo/HttpUrl.h"

namespace trelvo::tool {

/// Asks the server, by HEAD on a connection of its own, how long the file at `url` is. The
/// library's request tells that to nobody, and a progress bar wants to know.
///
/// Takes two seconds at most behind the look-up of the server's name, and ends early when one of
/// the descriptors `until` becomes readable.
/// @return nothing when the server does not say, does not answer in time, or is behind a proxy.
std::optional<std::uint64_t> askRemoteSize(const HttpUrl& url, const std::vector<int>& until);

/// The length that the head of an answer tells: that of a 200 with a "Content-Length:".
std::optional<std::uint64_t> lengthInHead(const std::string& head);

}  // namespace trelvo::tool
