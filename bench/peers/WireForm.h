#pragma once

#include <vector>

#include "bench/Samples.h"

namespace bench {

/// The bytes of a sample in this library's wire form, made by the bare encoder of the floor.
std::vector<unsigned char> wireForm(const GeranSample& sample);
std::vector<unsigned char> wireForm(const ContainerSample& sample);
std::vector<unsigned char> wireForm(const InjectionSample& sample);

}  // namespace bench
