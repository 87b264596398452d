#include <gtest/gtest.h>

#include <memory>

#include <trelvo/core/ISystemLocationSettings.h>
#include <trelvo/core/ISystemLocationSettingsObserver.h>
#include <trelvo/core/SystemLocationSettingsUbuntu.h>

namespace trelvo::core {
namespace {

TEST(SystemLocationSettings, ThePlatformsAreUbuntus) {
  const std::unique_ptr<ISystemLocationSettings> settings(ISystemLocationSettings::create());
  EXPECT_NE(dynamic_cast<SystemLocationSettingsUbuntu*>(settings.get()), nullptr);
}

TEST(SystemLocationSettings, AllowLocation) {
  const std::unique_ptr<ISystemLocationSettings> settings(ISystemLocationSettings::create());
  EXPECT_TRUE(settings->isConsentAccepted());
  EXPECT_TRUE(settings->isNetworkPositioningEnabled());
}

TEST(SystemLocationSettings, TakeNoObserver) {
  class Observer : public ISystemLocationSettingsObserver {};
  SystemLocationSettingsUbuntu settings;
  Observer observer;
  EXPECT_EQ(settings.setObserver(&observer), StatusNotSupported);
  EXPECT_EQ(settings.setObserver(nullptr), StatusNotSupported);
}

}  // namespace
}  // namespace trelvo::core
