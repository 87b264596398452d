// Every public header is named: by a record's table, by the golden vectors, or here, with the test
// that has the allocations behind it fail.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/golden/SchemaClass.h"

namespace trelvo::test {
namespace {

namespace fs = std::filesystem;

/// The test, below tests/, and what it uses of the header: a class, or the function that makes one.
struct Row {
  const char* header;
  const char* test;
  const char* word;
};

constexpr Row kProved[] = {
    {"Buffer.h", "objects/BufferTest.cpp", "Buffer"},
    {"BufferStream.h", "objects/BufferStreamTest.cpp", "BufferStream"},
    {"ConnectionInfo.h", "network/ConnectionManagerMemoryTest.cpp", "ConnectionInfo"},
    {"CryptoFileCommon.h", "crypto/CryptoFileMemoryTest.cpp", "ICryptoFile::open"},
    {"CryptoFileLin.h", "crypto/CryptoFileMemoryTest.cpp", "ICryptoFile::open"},
    {"CryptoLinux.h", "crypto/OpenSslMemoryTest.cpp", "CryptoLinux"},
    {"CryptoLinuxStatic.h", "crypto/CryptoMemoryTest.cpp", "gCryptoStatic"},
    {"CryptoLog.h", "crypto/CryptoFileMemoryTest.cpp", "ICryptoLog::create"},
    {"CryptoUtilityAdaptationCommon.h", "crypto/CryptoMemoryTest.cpp",
     "ICryptographyUtility::open"},
    {"CryptoUtilityUbuntu.h", "crypto/CryptoMemoryTest.cpp", "ICryptographyUtility::open"},
    {"DebugCommon.h", "debug/LoggingMemoryTest.cpp", "readConfig"},
    {"DebugCommon.h", "robustness/EveryOperationTest.cpp", "writeLogEll"},
    {"DecryptorLin.h", "crypto/CryptoMemoryTest.cpp", "decryptAes"},
    {"EncryptorLin.h", "crypto/CryptoMemoryTest.cpp", "create_encryptor"},
    {"EvpCryptorLin.h", "crypto/CryptoMemoryTest.cpp", "add_chunk"},
    {"GenericObjectWrapper.h", "objects/GenericObjectWrapperTest.cpp", "GenericObjectWrapper"},
    {"ICryptoFile.h", "robustness/EveryOperationTest.cpp", "ICryptoFile::open"},
    {"ICryptoLog.h", "robustness/EveryOperationTest.cpp", "createDebugInternalLog"},
    {"ICryptoLog.h", "crypto/CryptoFileMemoryTest.cpp", "ICryptoLog::decrypt"},
    {"ICryptography.h", "crypto/CryptoMemoryTest.cpp", "ICryptography::open"},
    {"ICryptographyUtility.h", "robustness/EveryOperationTest.cpp", "store->encrypt"},
    {"IStream.h", "objects/BufferStreamTest.cpp", "BufferStream"},
    {"Lockable.h", "core/LockableTest.cpp", "Lockable"},
    {"LockableBase.h", "core/LockableTest.cpp", "LockableBase"},
    {"Midpoint.h", "geometry/GeometryMemoryTest.cpp", "Midpoint"},
    {"NetworkAdaptation.h", "robustness/EveryOperationTest.cpp", "NetworkAdaptation::create"},
    {"NetworkAdaptationUbuntu.h", "robustness/EveryOperationTest.cpp", "NetworkAdaptation::create"},
    {"ReadOnlyBuffer.h", "objects/BufferTest.cpp", "ReadOnlyBuffer"},
    {"Secret.h", "crypto/CryptoMemoryTest.cpp", "Secret::create"},
    {"ShapeMatrix.h", "geometry/GeometryMemoryTest.cpp", "ShapeMatrix"},
    {"SingletonPointer.h", "core/SingletonPointerTest.cpp", "SingletonPointer"},
    {"StateEstimate.h", "geometry/GeometryMemoryTest.cpp", "StateEstimate"},
    {"StateEstimateCovariance.h", "geometry/GeometryMemoryTest.cpp", "StateEstimateCovariance"},
    {"Symmetric2by2Matrix.h", "geometry/GeometryMemoryTest.cpp", "Symmetric2by2Matrix"},
    {"Symmetric4by4Matrix.h", "geometry/GeometryMemoryTest.cpp", "Symmetric4by4Matrix"},
    {"UsedConnection.h", "network/ConnectionManagerMemoryTest.cpp", "startMonitorUsedConnection"},
    {"core/AsyncCallDispatcher.h", "core/DispatchMemoryTest.cpp", "AsyncCallDispatcher"},
    {"core/AsyncCallDispatcherCommon.h", "core/DispatchMemoryTest.cpp", "queueAsyncCall"},
    {"core/Directory.h", "robustness/EveryOperationTest.cpp", "Directory::mkPath"},
    {"core/DirectoryLinux.h", "core/FilesOutOfMemoryTest.cpp", "DirectoryLinux"},
    {"core/File.h", "core/FilesOutOfMemoryTest.cpp", "Directory::openFile"},
    {"core/IAlarmTimer.h", "core/DispatchMemoryTest.cpp", "IAlarmTimer::create"},
    {"core/IAsyncCallDispatcher.h", "core/DispatchMemoryTest.cpp", "queueAsyncCall"},
    {"core/IDirectory.h", "robustness/EveryOperationTest.cpp", "findEntriesStartWith"},
    {"core/IMutex.h", "core/MutexTest.cpp", "IMutex"},
    {"core/ISemaphore.h", "core/SemaphoreTest.cpp", "ISemaphore"},
    {"core/ISystemLocationSettings.h", "robustness/EveryOperationTest.cpp",
     "ISystemLocationSettings::create"},
    {"core/IThread.h", "core/ThreadTest.cpp", "IThread"},
    {"core/ITime.h", "core/TimeTest.cpp", "ITime"},
    {"core/ITimer.h", "core/DispatchMemoryTest.cpp", "ITimer::create"},
    {"core/LinAlarmTimer.h", "core/DispatchMemoryTest.cpp", "IAlarmTimer::create"},
    {"core/LinAsyncCallDispatcher.h", "core/DispatchMemoryTest.cpp", "attachPollSink"},
    {"core/LinGlibAsyncCallDispatcher.h", "core/DispatchMemoryTest.cpp",
     "LinGlibAsyncCallDispatcher::create"},
    {"core/LinGlibMainLoop.h", "core/DispatchMemoryTest.cpp", "MainLoopTypeLinGlib"},
    {"core/LinMutex.h", "core/MutexTest.cpp", "LinMutex"},
    {"core/LinPollAsyncCallDispatcher.h", "core/DispatchMemoryTest.cpp",
     "LinPollAsyncCallDispatcher::create"},
    {"core/LinPollMainLoop.h", "core/DispatchMemoryTest.cpp", "MainLoopTypeLinPoll"},
    {"core/LinSemaphore.h", "core/SemaphoreTest.cpp", "LinSemaphore"},
    {"core/LinThread.h", "core/ThreadTest.cpp", "LinThread"},
    {"core/LinTimeProvider.h", "core/TimeTest.cpp", "LinTimeProvider"},
    {"core/LinTimer.h", "core/DispatchMemoryTest.cpp", "ITimer::create"},
    {"core/MainLoop.h", "core/DispatchMemoryTest.cpp", "MainLoop::create"},
    {"core/MainLoopCommon.h", "core/DispatchMemoryTest.cpp", "MainLoop::create"},
    {"core/SystemInfo.h", "robustness/EveryOperationTest.cpp", "SystemInfo::getMMF"},
    {"core/SystemLocationSettingsUbuntu.h", "robustness/EveryOperationTest.cpp",
     "ISystemLocationSettings::create"},
    {"core/Unicode.h", "core/FilesOutOfMemoryTest.cpp", "Unicode"},
    {"crypto/ICryptor.h", "crypto/CryptoMemoryTest.cpp", "ICryptor"},
    {"gom/CharacterData.h", "objects/CharacterDataTest.cpp", "CharacterData"},
    {"gom/Collection.h", "objects/CollectionTest.cpp", "Collection"},
    {"gom/GenericObject.h", "objects/GenericObjectTest.cpp", "GenericObject"},
    {"gom/InternalVariant.h", "objects/CollectionTest.cpp", "InternalVariant"},
    {"gom/ObjectBase.h", "objects/ObjectBaseTest.cpp", "ObjectBase"},
    {"gom/ObjectCollection.h", "objects/ObjectCollectionTest.cpp", "ObjectCollection"},
    {"gom/ValueCollection.h", "objects/ValueCollectionTest.cpp", "ValueCollection"},
    {"gom/Variant.h", "objects/VariantTest.cpp", "Variant"},
    {"network/ConnectionInfoContainer.h", "network/ConnectionManagerMemoryTest.cpp",
     "ConnectionInfoContainer"},
    {"network/ConnectionManagerGeneric.h", "network/ConnectionManagerMemoryTest.cpp",
     "ConnectionManagerGeneric"},
    {"network/ConnectionManagerProxy.h", "network/ConnectionManagerMemoryTest.cpp",
     "IConnectionManager::create"},
    {"network/HTTPRequest.h", "network/HTTPMemoryTest.cpp", "download"},
    {"network/IConnectionManager.h", "network/ConnectionManagerMemoryTest.cpp",
     "IConnectionManager::create"},
    {"network/IHTTPRequest.h", "network/HTTPMemoryTest.cpp", "IHTTPRequest::create"},
    {"schema/CellMeasurement.h", "schema/CellMeasurementTest.cpp", "CellMeasurement"},
    {"schema/InternalUtility.h", "geometry/GeometryMemoryTest.cpp", "WalksOver"},
    {"schema/NeighborCellInjection.h", "schema/CellInjectionTest.cpp", "NeighborCellInjection"},
    {"schema/ObjectBaseFactory.h", "objects/ObjectBaseTest.cpp", "ObjectBase"},
    {"schema/ServingCellInjection.h", "schema/CellInjectionTest.cpp", "ServingCellInjection"},
    {"schema/Utility.h", "geometry/GeometryMemoryTest.cpp", "Utility"},
};

/// Nothing in them builds, reads, writes or clones: interfaces of the application's, enumerations,
/// plain records, entry points that do nothing, handles. Those of the connectivity service live on
/// GLib's memory, which ends the program when it runs out.
const std::set<std::string> kWithoutMemory = {
    "Debug.h",
    "DebugMutex.h",
    "Export.h",
    "IAdaptationExtension.h",
    "IAlarmObserver.h",
    "IConnectionInfoList.h",
    "IConnectionObserver.h",
    "ILog.h",
    "INetworkAdaptation.h",
    "IPositioningExtension.h",
    "IPowerAdaptation.h",
    "ISerializable.h",
    "Library.h",
    "Lock.h",
    "ProxyInfo.h",
    "Status.h",
    "auto_array.h",
    "core/CrtVariants.h",
    "core/IAsyncCallReceiver.h",
    "core/IFile.h",
    "core/ILockable.h",
    "core/IPollSink.h",
    "core/ISystemLocationSettingsObserver.h",
    "core/IThreadObserver.h",
    "core/ITimeProvider.h",
    "core/ITimerObserver.h",
    "core/Singleton.h",
    "crypto/CryptoParams.h",
    "crypto/Cryptor.h",
    "crypto/PaddingType.h",
    "gom/IValuable.h",
    "gom/ObjectHandle.h",
    "gom/ReferenceCountable.h",
    "gom/SharedPointer.h",
    "network/Connectivity.h",
    "network/IConnectionManagerObserver.h",
    "schema/Source.h",
    "schema/Technology.h",
    "trelvo.h",
};

std::string textOf(const std::string& path) {
  std::ifstream in(path);
  EXPECT_TRUE(in) << path;
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string testPath(const std::string& name) { return std::string(TRELVO_TEST_DATA) + "/" + name; }

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::set<std::string> publicHeaders() {
  const fs::path root = fs::path(TRELVO_TEST_DATA).parent_path() / "include" / "trelvo";
  std::set<std::string> headers;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) {
      headers.insert(fs::relative(entry.path(), root).generic_string());
    }
  }
  return headers;
}

/// Whether a golden vector is of the header's class, or a row of EveryRecordTest.cpp.
bool isSweptAsRecord(const std::string& header, const std::string& everyRecord) {
  return schemaClasses().count(fs::path(header).stem().string()) != 0 ||
         has(everyRecord, "Row<" + fs::path(header).stem().string() + ",");
}

TEST(EveryHeader, IsNamedWithTheTestThatHasItsAllocationsFail) {
  const std::set<std::string> headers = publicHeaders();
  EXPECT_GT(headers.size(), 150U);
  const std::string everyRecord = textOf(testPath("robustness/EveryRecordTest.cpp"));
  std::set<std::string> named = kWithoutMemory;
  for (const Row& row : kProved) {
    named.insert(row.header);
  }
  for (const std::string& header : headers) {
    EXPECT_TRUE(named.count(header) != 0 || isSweptAsRecord(header, everyRecord))
        << header << " is new: which test has its allocations fail?";
  }
  for (const std::string& name : named) {
    EXPECT_TRUE(headers.count(name) != 0) << name << " is gone";
  }
}

TEST(EveryHeader, IsNamedWithATestThatDoesSo) {
  for (const Row& row : kProved) {
    const std::string text = textOf(testPath(row.test));
    EXPECT_TRUE(has(text, "everyAllocation") || has(text, "allocationsOf")) << row.test;
    EXPECT_TRUE(has(text, row.word)) << row.test << " has no " << row.word;
    EXPECT_EQ(kWithoutMemory.count(row.header), 0U) << row.header;
  }
}

}  // namespace
}  // namespace trelvo::test
