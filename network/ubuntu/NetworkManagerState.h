#pragma once

#include <trelvo/network/Connectivity.h>

#include "network/ubuntu/PropertyReader.h"

namespace trelvo::network {

/// What NetworkManager says of the device's connection at one moment.
struct NetworkManagerState {
  using State = com::ubuntu::location::connectivity::State;
  using Characteristics = com::ubuntu::location::connectivity::Characteristics;

  static constexpr const char* kNetworkManager = "org.freedesktop.NetworkManager";
  static constexpr const char* kModemManager = "org.freedesktop.ModemManager1";

  /// Reads one. The state is NetworkManager's own, number for number, and Unknown when it does not
  /// answer. The characteristics are those of its primary connection: WLAN and cellular by the
  /// connection's type or that of its devices. Roaming is what ModemManager says of the
  /// modem's registration, and clear when that cannot be asked.
  static NetworkManagerState read(PropertyReader& reader);

  /// Whether NetworkManager answered each question in time. When not, the rest says nothing.
  bool complete = false;
  State state = State::Unknown;
  Characteristics characteristics = Characteristics::None;
};

}  // namespace trelvo::network
