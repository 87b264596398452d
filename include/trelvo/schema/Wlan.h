#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/WlanDn.h>

namespace trelvo::schema {

/// A WLAN access point with the area it covers.
///
/// A flat record of class id 136. It lives in memory only: write() and read() throw StatusInternal,
/// and ObjectBaseFactory does not make one.
///
/// Copying and assigning share both parts; clone() copies them. Equal are records with the same
/// bits and parts that are both missing or both there and equal.
///
/// Threads: one at a time, together with both parts.
class TRELVO_EXPORT Wlan : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasCoverage = 0x2,
  };

  /// No part set.
  Wlan();
  /// With an identity; an empty handle leaves it unset.
  explicit Wlan(const gom::SharedPointer<WlanDn>& dn);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<Wlan> create();
  [[nodiscard]] static gom::SharedPointer<Wlan> create(const gom::SharedPointer<WlanDn>& dn);
  /// A record that shares the parts of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<Wlan> create(const gom::SharedPointer<Wlan>& other);

  /// Dumps both parts.
  void dump() const override;
  [[nodiscard]] Wlan* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears bits and lets go of the parts they name.
  void unset(unsigned int mask) override;

  bool operator==(const Wlan& other) const;
  bool operator!=(const Wlan& other) const { return !(*this == other); }

  /// The identity; empty while unset.
  gom::SharedPointer<WlanDn> dn() const;
  /// Shares `dn`. An empty handle gives StatusWrongState and changes nothing.
  Status setDn(const gom::SharedPointer<WlanDn>& dn);

  /// The area that the access point covers; empty while unset.
  gom::SharedPointer<Area> coverage() const;
  /// Shares `coverage`. An empty handle gives StatusWrongState and changes nothing.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  struct Fields;

  gom::SharedPointer<WlanDn> m_dn;
  gom::SharedPointer<Area> m_coverage;
};

}  // namespace trelvo::schema
