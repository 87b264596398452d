#include "ScriptedPlatform.h"

namespace trelvo::test {

ScriptedPlatform& ScriptedPlatform::instance() {
  static ScriptedPlatform platform;
  return platform;
}

ScriptedPlatform& ScriptedPlatform::fresh() {
  ScriptedPlatform& platform = instance();
  platform.manager = std::make_shared<ScriptedManager>();
  platform.whenAsked = [] {};
  platform.asked = 0;
  return platform;
}

}  // namespace trelvo::test

// The definition of this program takes the place of the library's.
std::shared_ptr<com::ubuntu::location::connectivity::Manager>
com::ubuntu::location::connectivity::platform_default_manager() {
  auto& platform = trelvo::test::ScriptedPlatform::instance();
  ++platform.asked;
  platform.whenAsked();
  return platform.manager;
}
