#pragma once

#include <trelvo/Export.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/UtraCellDn.h>

namespace trelvo::schema {

/// The name of an area of cells, alike for all radio technologies: up to three numbered layers.
///
///             GERAN       UTRA        E-UTRA      CDMA
///   layer 1   MCC         MCC         MCC         SID
///   layer 2   MNC         MNC         MNC         NID
///   layer 3   LAC         RNC         eNodeB      none
///
/// A flat record of class id 114 that lives in memory only: write() and read() throw
/// StatusInternal. A name is fixed when it is made, and has no presence bits: valueExists() is
/// false for every mask, and isEmpty() is true, unless there is an extension, however much is
/// named.
///
/// Equal are names of the same idType() and nwType() with the same layers, as far as idType() goes.
///
/// Threads: one at a time.
class TRELVO_EXPORT CellularObjectDn : public gom::ObjectBase {
 public:
  /// How many layers count.
  enum IdType : unsigned char {
    Layer1 = 1,
    Layer2 = 2,
    Layer3 = 3,
  };

  /// The radio technology.
  enum NwType : unsigned char {
    NwUnknown = 0,
    NwGeran = 1,
    NwUtraFdd = 2,
    NwEUtra = 3,
    NwCdma = 4,
    NwUtraTdd = 5,
  };

  /// What layer 3 is.
  enum L3IdType : unsigned char {
    L3None = 0,
    L3Lac = 1,       ///< Location area code.
    L3RncId = 2,     ///< Identity of the radio network controller.
    L3ENodeBId = 3,  ///< Identity of the base station.
  };

  /// All fields 0, idType() too.
  CellularObjectDn();
  /// A name of one layer: a country, or a CDMA system.
  CellularObjectDn(NwType nwType, unsigned short layer1);
  /// A name of two layers: a network.
  CellularObjectDn(NwType nwType, unsigned short layer1, unsigned short layer2);
  /// A name of three layers: an area within a network.
  CellularObjectDn(NwType nwType, unsigned short layer1, unsigned short layer2, L3IdType l3IdType,
                   unsigned int layer3);

  /// Layer 1 is 0 of an unknown technology. An empty handle when memory runs out, as with all that
  /// follow.
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create();
  /// By the constructor of the same arguments.
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(NwType nwType,
                                                                   unsigned short layer1);
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(NwType nwType,
                                                                   unsigned short layer1,
                                                                   unsigned short layer2);
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(NwType nwType,
                                                                   unsigned short layer1,
                                                                   unsigned short layer2,
                                                                   L3IdType l3IdType,
                                                                   unsigned int layer3);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(
      const gom::SharedPointer<CellularObjectDn>& other);

  /// The country, network or area that a cell belongs to. Layers are taken as the cell has them
  /// stored, set or not. An empty handle for an empty `cell`, and for an `idType` other than the
  /// three; CDMA has no third layer, so Layer3 gives an empty handle too.
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(
      const gom::SharedPointer<GeranCellDn>& cell, IdType idType);
  /// `nwType` says whether it is FDD or TDD; it is taken as it is.
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(
      NwType nwType, const gom::SharedPointer<UtraCellDn>& cell, IdType idType);
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(
      const gom::SharedPointer<EUtraCellDn>& cell, IdType idType);
  [[nodiscard]] static gom::SharedPointer<CellularObjectDn> create(
      const gom::SharedPointer<CdmaCellDn>& cell, IdType idType);

  void dump() const override;
  [[nodiscard]] CellularObjectDn* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;

  bool operator==(const CellularObjectDn& other) const;
  bool operator!=(const CellularObjectDn& other) const { return !(*this == other); }

  /// How many layers count.
  IdType idType() const noexcept { return m_idType; }
  /// The radio technology.
  NwType nwType() const noexcept { return m_nwType; }
  /// Mobile country code, or system identification.
  unsigned short layer1() const noexcept { return m_layer1; }
  /// Mobile network code, or network identification; 0 in a name of one layer.
  unsigned short layer2() const noexcept { return m_layer2; }
  /// What layer3() is; L3None in a name of fewer than three layers.
  L3IdType l3IdType() const noexcept { return m_l3IdType; }
  /// The identity within the network; 0 in a name of fewer than three layers.
  unsigned int layer3() const noexcept { return m_layer3; }

 private:
  IdType m_idType{};
  NwType m_nwType = NwUnknown;
  unsigned short m_layer1 = 0;
  unsigned short m_layer2 = 0;
  L3IdType m_l3IdType = L3None;
  unsigned int m_layer3 = 0;
};

}  // namespace trelvo::schema
