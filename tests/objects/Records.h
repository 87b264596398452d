#pragma once

#include <memory>

#include <trelvo/IStream.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/schema/GeranCellDn.h>

namespace trelvo::test {

/// A flat record such as an application may make for itself: two fields, a one-byte mask.
class PairRecord : public gom::ObjectBase {
 public:
  enum : unsigned int { HasSmall = 0x1, HasLarge = 0x4, HasAll = 0x5 };
  static constexpr unsigned short kClassId = 4321;

  PairRecord() : ObjectBase(kClassId) {}

  [[nodiscard]] static gom::SharedPointer<PairRecord> create() {
    return new (std::nothrow) PairRecord;
  }
  [[nodiscard]] static gom::SharedPointer<PairRecord> create(unsigned char small,
                                                             unsigned int large) {
    gom::SharedPointer<PairRecord> record = create();
    record->setSmall(small);
    record->setLarge(large);
    return record;
  }

  [[nodiscard]] PairRecord* clone() const override {
    auto copy = std::make_unique<PairRecord>();
    if (copy->cloneFrom(*this) != StatusOk) {
      return nullptr;
    }
    copy->m_small = m_small;
    copy->m_large = m_large;
    return copy.release();
  }

  bool compare(const ObjectBase* other) const override {
    const auto* const same = dynamic_cast<const PairRecord*>(other);
    return same != nullptr && *this == *same;
  }

  [[nodiscard]] bool write(IStream& stream) const override {
    if (!stream.writeUint8(1) || !writeValueMask8(stream, HasAll) ||
        (valueExists(HasLarge) && !stream.writeUint32(m_large)) ||
        (valueExists(HasSmall) && !stream.writeUint8(m_small))) {
      return false;
    }
    return stream.good();
  }

  [[nodiscard]] bool read(IStream& stream) override {
    unset(HasAll);
    unsigned char version = 0;
    if (!stream.readUint8(version) || version != 1 || !readValueMask8(stream, HasAll) ||
        (valueExists(HasLarge) && !stream.readUint32(m_large)) ||
        (valueExists(HasSmall) && !stream.readUint8(m_small))) {
      return false;
    }
    return stream.good();
  }

  bool operator==(const PairRecord& other) const {
    return ObjectBase::operator==(other) && m_small == other.m_small && m_large == other.m_large;
  }

  Status setSmall(unsigned char small) { return setField(HasSmall, m_small, small); }
  Status setLarge(unsigned int large) { return setField(HasLarge, m_large, large); }
  unsigned char small() const { return m_small; }
  unsigned int large() const { return m_large; }

  using ObjectBase::readValueMask8;
  using ObjectBase::valueSet;
  using ObjectBase::valueUnset;
  using ObjectBase::writeValueMask8;

 private:
  unsigned char m_small = 0;
  unsigned int m_large = 0;
};

/// A flat record without a wire form, and with a nested one.
class SilentRecord : public gom::ObjectBase {
 public:
  enum : unsigned int { HasNested = 0x1 };

  SilentRecord() : ObjectBase(77) {}
  [[nodiscard]] SilentRecord* clone() const override { return nullptr; }
  bool compare(const ObjectBase* other) const override { return this == other; }

  [[nodiscard]] static gom::SharedPointer<SilentRecord> create() {
    return new (std::nothrow) SilentRecord;
  }

  Status setNested(const gom::SharedPointer<PairRecord>& nested) {
    return setField(HasNested, m_nested, nested);
  }
  gom::SharedPointer<PairRecord> nested() const { return fieldIfSet(HasNested, m_nested); }
  gom::SharedPointer<PairRecord> stored() const { return m_nested; }

 private:
  gom::SharedPointer<PairRecord> m_nested;
};

/// A cell identity with a wire form and a clone of its own, under the library's class id.
class TaggedCellDn : public schema::GeranCellDn {
 public:
  [[nodiscard]] TaggedCellDn* clone() const override { return new TaggedCellDn; }
  bool compare(const ObjectBase* other) const override {
    return dynamic_cast<const TaggedCellDn*>(other) != nullptr;
  }
  [[nodiscard]] bool write(IStream& stream) const override {
    return stream.writeUint16(0xBBAA) && stream.good();
  }
};

}  // namespace trelvo::test
