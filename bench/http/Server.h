#pragma once

#include <cstddef>
#include <string>

namespace bench {

constexpr std::size_t kBodySize = 256 << 20;

/// The two forms in which the server has the body: as it is, and enciphered by AES-128 in CBC mode
/// with kKey and kIv.
enum class Served { Plain, Enciphered };

/// Where a body lies.
struct Source {
  std::string server;  ///< "127.0.0.1:PORT"
  std::string path;    ///< from "/" on

  std::string url() const { return "http://" + server + path; }
};

/// The body in that form, on an nginx of this process's own, which runs from the first call to the
/// end of the process. A form is made when it is first asked for.
Source sourceOf(Served form);

/// CRC-32 of the body, not enciphered.
unsigned int bodyChecksum();

}  // namespace bench
