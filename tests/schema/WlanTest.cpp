#include <gtest/gtest.h>

#include <trelvo/BufferStream.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/Wlan.h>

namespace trelvo::schema {
namespace {

using gom::SharedPointer;

SharedPointer<WlanDn> aDn() { return WlanDn::create(0x0011223344556677); }
SharedPointer<Area> anArea() { return Area::create(1, 2, 3, 4, 5.0F); }

TEST(Wlan, IsOfClass136AndStartsEmpty) {
  const Wlan wlan;
  EXPECT_EQ(wlan.key(), 136);
  EXPECT_TRUE(wlan.isEmpty());
  EXPECT_FALSE(wlan.dn());
  EXPECT_FALSE(wlan.coverage());
  EXPECT_TRUE(Wlan::create()->isEmpty());
}

TEST(Wlan, IsMadeWithAnIdentityUnlessItIsEmpty) {
  const SharedPointer<WlanDn> dn = aDn();
  EXPECT_EQ(Wlan(dn).dn(), dn);
  EXPECT_EQ(Wlan(dn).values(), 0x1U);
  EXPECT_EQ(Wlan::create(dn)->dn(), dn);
  EXPECT_TRUE(Wlan(SharedPointer<WlanDn>()).isEmpty());
  EXPECT_TRUE(Wlan::create(SharedPointer<WlanDn>())->isEmpty());
}

TEST(Wlan, SettersShareTheParts) {
  const SharedPointer<WlanDn> dn = aDn();
  const SharedPointer<Area> area = anArea();
  Wlan wlan;
  EXPECT_EQ(wlan.setDn(dn), StatusOk);
  EXPECT_EQ(wlan.values(), 0x1U);
  EXPECT_EQ(wlan.setCoverage(area), StatusOk);
  EXPECT_EQ(wlan.values(), 0x3U);
  EXPECT_EQ(wlan.dn(), dn);
  EXPECT_EQ(wlan.coverage(), area);
}

TEST(Wlan, EmptyHandlesAreRefusedAndChangeNothing) {
  Wlan wlan;
  EXPECT_EQ(wlan.setCoverage(SharedPointer<Area>()), StatusWrongState);
  EXPECT_EQ(wlan.setDn(SharedPointer<WlanDn>()), StatusWrongState);
  EXPECT_TRUE(wlan.isEmpty());
  const SharedPointer<WlanDn> dn = aDn();
  const SharedPointer<Area> area = anArea();
  wlan.setDn(dn);
  wlan.setCoverage(area);
  EXPECT_EQ(wlan.setCoverage(SharedPointer<Area>()), StatusWrongState);
  EXPECT_EQ(wlan.setDn(SharedPointer<WlanDn>()), StatusWrongState);
  EXPECT_EQ(wlan.dn(), dn);
  EXPECT_EQ(wlan.coverage(), area);
}

TEST(Wlan, UnsetLetsGoOfTheNamedParts) {
  const SharedPointer<WlanDn> dn = aDn();
  const SharedPointer<Area> area = anArea();
  Wlan wlan(dn);
  wlan.setCoverage(area);
  wlan.unset(0x2);
  EXPECT_FALSE(wlan.coverage());
  EXPECT_EQ(area->referenceCount(), 1);
  EXPECT_EQ(wlan.dn(), dn);
  wlan.unset(0xFFFFFFFF);
  EXPECT_TRUE(wlan.isEmpty());
  EXPECT_EQ(dn->referenceCount(), 1);
}

TEST(Wlan, HasNoWireForm) {
  BufferStream stream;
  Wlan wlan(aDn());
  EXPECT_THROW(static_cast<void>(wlan.write(stream)), Status);
  EXPECT_THROW(static_cast<void>(wlan.read(stream)), Status);
  try {
    static_cast<void>(wlan.write(stream));
  } catch (const Status status) {
    EXPECT_EQ(status, StatusInternal);
  }
  EXPECT_TRUE(stream.eof());
}

TEST(Wlan, EqualityComparesTheParts) {
  Wlan one(aDn());
  Wlan other(aDn());
  EXPECT_EQ(one, other);
  one.setCoverage(anArea());
  EXPECT_NE(one, other);
  EXPECT_NE(other, one);
  other.setCoverage(anArea());
  EXPECT_EQ(one, other);
  other.coverage()->setLatitude(99);
  EXPECT_NE(one, other);
  EXPECT_NE(Wlan(aDn()), Wlan(WlanDn::create(5)));
  EXPECT_NE(Wlan(aDn()), Wlan());
  Wlan extended;
  ASSERT_NE(extended.extension(), nullptr);
  EXPECT_NE(extended, Wlan());
}

TEST(Wlan, CopiesShareTheParts) {
  const SharedPointer<Wlan> source = Wlan::create(aDn());
  source->setCoverage(anArea());
  const SharedPointer<Wlan> copy = Wlan::create(source);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->dn(), source->dn());
  EXPECT_EQ(copy->coverage(), source->coverage());
  const Wlan constructed(*source);
  EXPECT_EQ(constructed.dn(), source->dn());
  Wlan assigned;
  assigned = *source;
  EXPECT_EQ(assigned.coverage(), source->coverage());
  EXPECT_EQ(assigned, *source);
  EXPECT_FALSE(Wlan::create(SharedPointer<Wlan>()));
}

TEST(Wlan, CloneCopiesTheParts) {
  Wlan source(aDn());
  source.setCoverage(anArea());
  const SharedPointer<Wlan> clone(source.clone());
  ASSERT_TRUE(clone);
  EXPECT_EQ(*clone, source);
  EXPECT_NE(clone->dn(), source.dn());
  EXPECT_NE(clone->coverage(), source.coverage());
  EXPECT_EQ(clone->dn()->referenceCount(), 2);  // the record's and the one asked for here

  const Wlan blank;
  const SharedPointer<Wlan> blankClone(blank.clone());
  EXPECT_EQ(*blankClone, blank);
}

TEST(Wlan, CompareWantsAnEqualWlan) {
  const Wlan wlan(aDn());
  const Wlan same(aDn());
  const Wlan other;
  const WlanDn foreign;
  EXPECT_TRUE(wlan.compare(&same));
  EXPECT_FALSE(wlan.compare(&other));
  EXPECT_FALSE(wlan.compare(&foreign));
  EXPECT_FALSE(wlan.compare(nullptr));
}

/// Counts its dumps.
class Dumped : public WlanDn {
 public:
  void dump() const override { ++count; }
  mutable int count = 0;
};

TEST(Wlan, DumpReachesTheParts) {
  const SharedPointer<Dumped> dn(new Dumped);
  Wlan(dn).dump();
  EXPECT_EQ(dn->count, 1);
  Wlan().dump();
}

}  // namespace
}  // namespace trelvo::schema
