#pragma once

// Includes every public header.

#include <trelvo/Buffer.h>
#include <trelvo/BufferStream.h>
#include <trelvo/Debug.h>
#include <trelvo/DebugCommon.h>
#include <trelvo/DebugMutex.h>
#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/ILog.h>
#include <trelvo/CryptoLinux.h>
#include <trelvo/CryptoLinuxStatic.h>
#include <trelvo/CryptoUtilityAdaptationCommon.h>
#include <trelvo/CryptoUtilityUbuntu.h>
#include <trelvo/DecryptorLin.h>
#include <trelvo/EncryptorLin.h>
#include <trelvo/EvpCryptorLin.h>
#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/IAdaptationExtension.h>
#include <trelvo/IConnectionInfoList.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/IPositioningExtension.h>
#include <trelvo/ISerializable.h>
#include <trelvo/IStream.h>
#include <trelvo/Lock.h>
#include <trelvo/Lockable.h>
#include <trelvo/LockableBase.h>
#include <trelvo/Midpoint.h>
#include <trelvo/NetworkAdaptation.h>
#include <trelvo/NetworkAdaptationUbuntu.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/ReadOnlyBuffer.h>
#include <trelvo/Secret.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/SingletonPointer.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/StateEstimateCovariance.h>
#include <trelvo/Status.h>
#include <trelvo/Symmetric2by2Matrix.h>
#include <trelvo/Symmetric4by4Matrix.h>
#include <trelvo/UsedConnection.h>
#include <trelvo/auto_array.h>

#include <trelvo/core/CrtVariants.h>
#include <trelvo/core/Directory.h>
#include <trelvo/core/DirectoryLinux.h>
#include <trelvo/core/File.h>
#include <trelvo/core/IDirectory.h>
#include <trelvo/core/IFile.h>
#include <trelvo/core/ILockable.h>
#include <trelvo/core/IMutex.h>
#include <trelvo/core/ISemaphore.h>
#include <trelvo/core/ISystemLocationSettings.h>
#include <trelvo/core/ISystemLocationSettingsObserver.h>
#include <trelvo/core/IThread.h>
#include <trelvo/core/IThreadObserver.h>
#include <trelvo/core/ITime.h>
#include <trelvo/core/ITimeProvider.h>
#include <trelvo/core/LinMutex.h>
#include <trelvo/core/LinSemaphore.h>
#include <trelvo/core/LinThread.h>
#include <trelvo/core/LinTimeProvider.h>
#include <trelvo/core/Singleton.h>
#include <trelvo/core/SystemInfo.h>
#include <trelvo/core/SystemLocationSettingsUbuntu.h>
#include <trelvo/core/Unicode.h>

#include <trelvo/crypto/CryptoParams.h>
#include <trelvo/crypto/Cryptor.h>
#include <trelvo/crypto/ICryptor.h>
#include <trelvo/crypto/PaddingType.h>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/Collection.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/IValuable.h>
#include <trelvo/gom/InternalVariant.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ObjectCollection.h>
#include <trelvo/gom/ObjectHandle.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>

#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/ConnectionManagerGeneric.h>
#include <trelvo/network/ConnectionManagerProxy.h>
#include <trelvo/network/Connectivity.h>
#include <trelvo/network/IConnectionManager.h>
#include <trelvo/network/IConnectionManagerObserver.h>
#include <trelvo/network/HTTPRequest.h>
#include <trelvo/network/IHTTPRequest.h>

#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/CdmaNeighborCellInjection.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellMeasurement.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/Coverage.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/EUtraNeighborCellInjection.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/GeranNeighborCellInjection.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/InternalUtility.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/NeighborCellInjection.h>
#include <trelvo/schema/ObjectBaseFactory.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/ServingCellInjection.h>
#include <trelvo/schema/Source.h>
#include <trelvo/schema/Technology.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraFddNeighborCellInjection.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddCell.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>
#include <trelvo/schema/UtraTddNeighborCell.h>
#include <trelvo/schema/UtraTddNeighborCellInjection.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellInjection.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/Wlan.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>
#include <trelvo/schema/WlanInjection.h>
#include <trelvo/schema/WlanMeasurement.h>

extern "C" {

/// Has no effect: the library needs no set-up. May be called any number of times, from any thread.
TRELVO_EXPORT void trelvo_core_init();

/// Has no effect: what the library holds is given back by its handles and when the process ends.
TRELVO_EXPORT void trelvo_core_fini();

}  // extern "C"
