#pragma once

#include <memory>
#include <string>

#include "tests/soak/Soak.h"

namespace soak {

/// Downloads from a server of its own on the loopback interface: plain, deciphered and checked on
/// the way, into sealed files, with a wrong checksum, what is not there, and what is cancelled.
/// Every outcome and every byte is as it should be.
std::unique_ptr<Crew> makeDownloadsCrew(const std::string& directory, unsigned int seed);

}  // namespace soak
