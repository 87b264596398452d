#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <ostream>
#include <string>

#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// A record class of the cellular schema: what the tests that hold for all of them need to know.
struct RecordClass {
  std::string name;
  unsigned short classId = 0;
  int largestMask = -1;  ///< -1 for a class without a wire form.
  std::function<gom::SharedPointer<gom::ObjectBase>()> create;
  std::function<gom::SharedPointer<gom::ObjectBase>(const gom::ObjectBase*)> createCopy;
  std::function<void(gom::ObjectBase& to, const gom::ObjectBase& from)> assign;
};

template <class T>
RecordClass recordClass(const char* name, unsigned short classId, int largestMask = -1) {
  return {name,
          classId,
          largestMask,
          [] { return T::create(); },
          [](const gom::ObjectBase* other) {
            // The copying overload takes a handle of the class, which shares the object.
            auto* const same = const_cast<T*>(dynamic_cast<const T*>(other));
            return T::create(gom::SharedPointer<T>(same));
          },
          [](gom::ObjectBase& to, const gom::ObjectBase& from) {
            dynamic_cast<T&>(to) = dynamic_cast<const T&>(from);
          }};
}

/// A number field of a record class: one row of the class's table.
struct RecordField {
  std::string name;
  unsigned int bit = 0;
  long long value = 0;   ///< Some value other than 0.
  long long lowest = 0;  ///< Ends of the field's type.
  long long highest = 0;
  std::string wire;  ///< The form of a record in which only this field is set, to `value`.
  std::function<gom::SharedPointer<gom::ObjectBase>()> create;
  std::function<Status(gom::ObjectBase&, long long)> set;
  std::function<long long(const gom::ObjectBase&)> get;
};

template <class Setter>
struct SetterTraits;
template <class T, class V>
struct SetterTraits<Status (T::*)(V)> {
  using Record = T;
  using Value = V;
};

template <auto setter, auto getter>
RecordField recordField(const char* name, unsigned int bit, long long value, const char* wire) {
  using T = typename SetterTraits<decltype(setter)>::Record;
  using V = typename SetterTraits<decltype(setter)>::Value;
  return {name,
          bit,
          value,
          std::numeric_limits<V>::lowest(),
          std::numeric_limits<V>::max(),
          wire,
          [] { return T::create(); },
          [](gom::ObjectBase& record, long long number) {
            return (dynamic_cast<T&>(record).*setter)(static_cast<V>(number));
          },
          [](const gom::ObjectBase& record) -> long long {
            return (dynamic_cast<const T&>(record).*getter)();
          }};
}

inline void PrintTo(const RecordClass& record, std::ostream* out) { *out << record.name; }
inline void PrintTo(const RecordField& field, std::ostream* out) { *out << field.name; }

/// The promises of every class, tested in CellularRecordTest.cpp for the classes listed there.
class EveryCellularRecord : public testing::TestWithParam<RecordClass> {
 protected:
  gom::SharedPointer<gom::ObjectBase> record = GetParam().create();
};

/// The promises of every number field, tested in CellularRecordTest.cpp for the fields that each
/// family's own test lists.
class EveryCellularField : public testing::TestWithParam<RecordField> {
 protected:
  gom::SharedPointer<gom::ObjectBase> with(long long value) const {
    gom::SharedPointer<gom::ObjectBase> made = GetParam().create();
    EXPECT_EQ(GetParam().set(*made, value), StatusOk);
    return made;
  }
};

/// Names the radio technologies, in the order in which typed suites list them; `first` is where a
/// suite begins.
template <int first = 0>
struct ByTechnology {
  template <class T>
  static std::string GetName(int index) {
    constexpr const char* kNames[] = {"Geran", "UtraFdd", "UtraTdd", "EUtra", "Cdma"};
    return kNames[first + index];
  }
};

/// Names a case after its parameter.
struct ByName {
  template <class T>
  std::string operator()(const testing::TestParamInfo<T>& info) const {
    return info.param.name;
  }
};

}  // namespace trelvo::schema
