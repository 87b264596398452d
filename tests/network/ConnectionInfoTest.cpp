#include <cstddef>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/UsedConnection.h>
#include <trelvo/network/ConnectionInfoContainer.h>

namespace trelvo {
namespace {

void expectReset(const ConnectionInfo& info) {
  EXPECT_EQ(info.size, 160U);
  EXPECT_EQ(info.type, 0U);
  EXPECT_FALSE(info.connected);
  EXPECT_TRUE(info.roaming);
  EXPECT_EQ(info.bearer, 0U);
  EXPECT_EQ(info.id, 0U);
  for (const char c : info.name) EXPECT_EQ(c, '\0');
}

TEST(ConnectionInfo, AFreshRecordIsTheResetRecord) { expectReset(ConnectionInfo()); }

TEST(ConnectionInfo, ResetMakesItTheResetRecordAgain) {
  ConnectionInfo info;
  info.size = 1;
  info.type = info.bearer = 2;
  info.connected = true;
  info.roaming = false;
  info.id = 3;
  std::memset(info.name, 'x', sizeof info.name);
  info.reset();
  expectReset(info);
}

TEST(ConnectionInfo, FieldsStandInTheirOrder) {
  static_assert(std::is_standard_layout_v<ConnectionInfo>);
  static_assert(std::is_trivially_copyable_v<ConnectionInfo>);
  EXPECT_EQ(offsetof(ConnectionInfo, size), 0U);
  EXPECT_EQ(offsetof(ConnectionInfo, type), 4U);
  EXPECT_EQ(offsetof(ConnectionInfo, connected), 8U);
  EXPECT_EQ(offsetof(ConnectionInfo, roaming), 9U);
  EXPECT_EQ(offsetof(ConnectionInfo, bearer), 12U);
  EXPECT_EQ(offsetof(ConnectionInfo, id), 16U);
  EXPECT_EQ(offsetof(ConnectionInfo, name), 24U);
  EXPECT_EQ(sizeof(ConnectionInfo::name), 129U);
  // The end is padded to the alignment of 64-bit numbers, which the processor chooses.
  EXPECT_EQ(sizeof(ConnectionInfo), alignof(ConnectionInfo) == 8 ? 160U : 156U);
}

TEST(ProxyInfo, AFreshRecordHasItsSizeAndNothingElse) {
  ProxyInfo proxy;
  proxy.host[0] = 'x';
  proxy.port = ProxyInfo::kDefaultPort;
  EXPECT_EQ(proxy.port, 8080U);
  proxy.size = 1;
  proxy.reset();
  EXPECT_EQ(proxy.size, 140U);
  EXPECT_EQ(proxy.port, 0U);
  for (const char c : proxy.host) EXPECT_EQ(c, '\0');
}

TEST(ProxyInfo, FieldsStandInTheirOrder) {
  EXPECT_EQ(offsetof(ProxyInfo, size), 0U);
  EXPECT_EQ(offsetof(ProxyInfo, host), 4U);
  EXPECT_EQ(sizeof(ProxyInfo::host), 129U);
  EXPECT_EQ(offsetof(ProxyInfo, port), 136U);
  EXPECT_EQ(sizeof(ProxyInfo), 140U);
}

TEST(UsedConnection, StartsWithoutBytes) {
  const UsedConnection used;
  expectReset(used.info);
  EXPECT_EQ(used.bytes, 0U);
}

TEST(ConnectionInfoContainer, AppendsCopies) {
  network::ConnectionInfoContainer list;
  IConnectionInfoList& base = list;
  ConnectionInfo info;
  info.id = 7;
  base.add(info);
  info.id = 8;
  base.add(info);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list.front().id, 7U);
  EXPECT_EQ(list.back().id, 8U);
}

}  // namespace
}  // namespace trelvo
