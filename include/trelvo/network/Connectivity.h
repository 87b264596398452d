#pragma once

#include <memory>

#include <core/property.h>

#include <trelvo/Export.h>

/// The platform's connectivity service, as far as the library needs it.
///
/// The library brings an implementation over NetworkManager's D-Bus interface (docs/network.md). An
/// application that has something else defines platform_default_manager() itself, in the program or
/// in a library that is linked before this one: its definition then serves the whole process.
namespace com::ubuntu::location::connectivity {

/// How far the device has got to the network, in NetworkManager's numbers: 20 disconnected, 40
/// connecting, 50 connected to the link, 60 to the site, 70 to the world. 0 is unknown. Other
/// numbers may come and mean not connected.
enum class State : int {
  Unknown = 0,
  Global = 70,  ///< The only state that counts as connected.
};

/// A set of bits that tells what kind the active connection is.
enum class Characteristics : unsigned int {
  None = 0,
  Wlan = 1,
  Cellular = 2,
  Roaming = 4,  ///< The cellular network is a foreign one.
};

/// The bits that both have: `(a & b) != Characteristics::None` tests one.
constexpr Characteristics operator&(Characteristics a, Characteristics b) noexcept {
  return static_cast<Characteristics>(static_cast<unsigned int>(a) & static_cast<unsigned int>(b));
}

/// The present state, and word of its changes.
///
/// The signals of both properties may come on any thread. A slot that is being called holds its
/// signal: it must not connect or disconnect there. When both change at once, `state` is set first,
/// so that a slot of `characteristics` finds the state that goes with them.
///
/// A `Property` has no lock of its own: an implementation whose properties are set on another
/// thread than they are read guards them itself.
class TRELVO_EXPORT Manager {
 public:
  virtual ~Manager();

  /// How far the device is connected.
  virtual const ::core::Property<State>& state() const = 0;
  /// By what it is connected.
  virtual const ::core::Property<Characteristics>& characteristics() const = 0;

 protected:
  Manager() = default;
  Manager(const Manager&) = default;
  Manager& operator=(const Manager&) = default;
};

/// The platform's manager. The library's own definition takes at most two seconds, and follows the
/// service on a thread of the manager's own until its last pointer goes.
///
/// Threads: any.
/// Failures: throws what is derived from std::runtime_error when the platform cannot be reached.
TRELVO_EXPORT std::shared_ptr<Manager> platform_default_manager();

}  // namespace com::ubuntu::location::connectivity
