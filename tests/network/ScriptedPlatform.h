#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <trelvo/network/Connectivity.h>

#include "network/ubuntu/SharedProperty.h"

namespace trelvo::test {

using com::ubuntu::location::connectivity::Characteristics;
using com::ubuntu::location::connectivity::State;

constexpr Characteristics bits(unsigned int value) { return static_cast<Characteristics>(value); }
constexpr State number(int value) { return static_cast<State>(value); }

/// A connectivity manager that says what the test sets.
class ScriptedManager : public com::ubuntu::location::connectivity::Manager {
 public:
  const ::core::Property<State>& state() const override { return m_state; }
  const ::core::Property<Characteristics>& characteristics() const override {
    return m_characteristics;
  }

  /// One thread at a time.
  void set(int state, unsigned int characteristics) {
    m_state.set(number(state));
    m_characteristics.set(bits(characteristics));
  }

 private:
  network::SharedProperty<State> m_state;
  network::SharedProperty<Characteristics> m_characteristics;
};

/// What this program's own platform_default_manager() does. There is one for the process, which
/// each test begins afresh.
struct ScriptedPlatform {
  std::shared_ptr<ScriptedManager> manager = std::make_shared<ScriptedManager>();
  /// Called first; may throw.
  std::function<void()> whenAsked = [] {};
  std::atomic<int> asked{0};

  static ScriptedPlatform& instance();
  static ScriptedPlatform& fresh();
};

}  // namespace trelvo::test
