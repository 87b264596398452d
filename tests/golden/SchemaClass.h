#pragma once

#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <trelvo/IStream.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/Coverage.h>

namespace trelvo::test {

template <class T>
using Handle = gom::SharedPointer<T>;

struct SchemaClass;

/// An object that a recipe made. Its class says which of the two holds it.
struct Made {
  const SchemaClass* type = nullptr;
  Handle<gom::ReferenceCountable> object;
  std::optional<schema::Coverage> coverage;
};

/// One value of a recipe's line: the text itself, and the object when it names one.
struct Argument {
  std::string text;
  std::optional<std::size_t> variable;

  /// The object that it names. Throws when it names none.
  const Made& in(const std::vector<Made>& variables) const {
    return variables.at(variable.value());
  }
};
using Arguments = std::vector<Argument>;
using Variables = std::vector<Made>;

/// How objects of one class are made, filled, written and read by name. What these functions
/// allocate is what the library allocates.
struct SchemaClass {
  using Maker = std::function<bool(Made&, const Arguments&, const Variables&)>;
  using Setter = std::function<Status(Made&, const Argument&, const Variables&)>;

  std::string name;
  std::map<std::size_t, Maker> makers;  ///< By the number of arguments.
  std::map<std::string, Setter> setters;
  std::map<std::string, Setter> adders;
  std::function<void(Made&, unsigned int)> unset;
  std::function<bool(const Made&, IStream&)> write;
  /// Makes a new object from a stream: one of this class or, for a composite, its generic object.
  std::function<bool(Made&, IStream&)> read;
  /// Reads into an object of this class.
  std::function<bool(Made&, IStream&)> readInto;
  /// Whether an object of this class has no value.
  std::function<bool(const Made&)> isEmpty;
  /// A deep copy, made like `read` makes an object.
  std::function<bool(const Made&, Made&)> clone;
  /// Whether an object equals one that `read` or `clone` made.
  std::function<bool(const Made&, const Made&)> equal;
  /// The generic object of a composite; empty for other classes.
  std::function<Handle<gom::GenericObject>(const Made&)> generic;
  /// For a composite: a new one over a generic object.
  std::function<bool(Made&, const Handle<gom::GenericObject>&)> wrap;
};

// --- a line's value as the type that a function takes ---

template <class T>
T integerOf(const std::string& text) {
  char* end = nullptr;
  T value{};
  bool same = false;
  if (text.front() == '-') {
    const long long wide = std::strtoll(text.c_str(), &end, 10);
    value = static_cast<T>(wide);
    same = static_cast<long long>(value) == wide && std::is_signed_v<T>;
  } else {
    const unsigned long long wide = std::strtoull(text.c_str(), &end, 10);
    value = static_cast<T>(wide);
    same = static_cast<unsigned long long>(value) == wide;
  }
  if (*end != '\0' || !same) {
    throw std::invalid_argument("not a number of the field's type: " + text);
  }
  return value;
}

template <class T>
struct Convert {
  static T from(const Argument& argument, const Variables& /*variables*/) {
    if constexpr (std::is_floating_point_v<T>) {
      char* end = nullptr;
      const double value = std::strtod(argument.text.c_str(), &end);
      if (*end != '\0') {
        throw std::invalid_argument("not a number: " + argument.text);
      }
      return static_cast<T>(value);
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(integerOf<std::underlying_type_t<T>>(argument.text));
    } else {
      return integerOf<T>(argument.text);
    }
  }
};

template <>
struct Convert<std::string> {
  static const std::string& from(const Argument& argument, const Variables& /*variables*/) {
    return argument.text;
  }
};

template <>
struct Convert<schema::Coverage> {
  static const schema::Coverage& from(const Argument& argument, const Variables& variables) {
    return argument.in(variables).coverage.value();
  }
};

template <class T>
struct Convert<Handle<T>> {
  static Handle<T> from(const Argument& argument, const Variables& variables) {
    const Made& made = argument.in(variables);
    if constexpr (std::is_same_v<T, gom::GenericObject>) {
      return made.type->generic(made);
    } else {
      auto* const object = dynamic_cast<T*>(made.object.get());
      if (object == nullptr) {
        throw std::invalid_argument("an object of another class: " + argument.text);
      }
      return object;
    }
  }
};

template <class A>
decltype(auto) converted(const Argument& argument, const Variables& variables) {
  return Convert<std::decay_t<A>>::from(argument, variables);
}

// --- describing a class ---

template <class T>
T& objectOf(const Made& made) {
  if constexpr (std::is_same_v<T, schema::Coverage>) {
    return const_cast<schema::Coverage&>(made.coverage.value());
  } else {
    return static_cast<T&>(*made.object);
  }
}

/// Fills in a SchemaClass for `T`, function by function.
template <class T>
class Describe {
 public:
  explicit Describe(std::string name) {
    m_class.name = std::move(name);
    if constexpr (!std::is_same_v<T, gom::ValueCollection>) {
      m_class.unset = [](Made& made, unsigned int mask) { objectOf<T>(made).unset(mask); };
    }
    if constexpr (std::is_same_v<T, schema::Coverage>) {
      asValue();
    } else if constexpr (std::is_base_of_v<gom::ObjectBase, T>) {
      asRecord();
    } else if constexpr (!std::is_same_v<T, gom::ValueCollection>) {
      asComposite();
    }
  }

  /// `T::create(A...)`, or its constructor where there is no create().
  template <class... A>
  Describe& made() {
    m_class.makers[sizeof...(A)] = [](Made& made, const Arguments& arguments,
                                      const Variables& variables) {
      return make<A...>(made, arguments, variables, std::index_sequence_for<A...>());
    };
    return *this;
  }

  /// A setter.
  template <class A, class Owner>
  Describe& field(const char* name, Status (Owner::*set)(A)) {
    m_class.setters[name] = calling(set);
    return *this;
  }
  Describe& field(const char* name, SchemaClass::Setter set) {
    m_class.setters[name] = std::move(set);
    return *this;
  }

  /// A function that adds a member.
  template <class A, class Owner>
  Describe& member(const char* name, Status (Owner::*add)(A)) {
    m_class.adders[name] = calling(add);
    return *this;
  }

  operator SchemaClass() const { return m_class; }  // NOLINT(google-explicit-constructor)

 private:
  template <class... A, std::size_t... I>
  static bool make(Made& made, const Arguments& arguments, const Variables& variables,
                   std::index_sequence<I...> /*places*/) {
    static_cast<void>(arguments);
    static_cast<void>(variables);
    if constexpr (std::is_same_v<T, schema::Coverage>) {
      made.coverage.emplace(converted<A>(arguments[I], variables)...);
      return true;
    } else {
      made.object = T::create(converted<A>(arguments[I], variables)...);
      return static_cast<bool>(made.object);
    }
  }

  template <class A, class Owner>
  static SchemaClass::Setter calling(Status (Owner::*function)(A)) {
    return [function](Made& made, const Argument& argument, const Variables& variables) {
      return (objectOf<T>(made).*function)(converted<A>(argument, variables));
    };
  }

  /// What objects do that stream themselves.
  void asSerializable() {
    m_class.write = [](const Made& made, IStream& stream) {
      return objectOf<T>(made).write(stream);
    };
    m_class.readInto = [](Made& made, IStream& stream) { return objectOf<T>(made).read(stream); };
    m_class.isEmpty = [](const Made& made) { return objectOf<T>(made).isEmpty(); };
  }

  void asValue() {
    asSerializable();
    m_class.read = [](Made& made, IStream& stream) { return made.coverage.emplace().read(stream); };
    m_class.clone = [](const Made& made, Made& copy) {
      copy.coverage = made.coverage;
      return true;
    };
    m_class.equal = [](const Made& a, const Made& b) { return *a.coverage == *b.coverage; };
  }

  void asRecord() {
    asSerializable();
    m_class.read = [](Made& made, IStream& stream) {
      const Handle<T> record = T::create();
      made.object = record;
      return record && record->read(stream);
    };
    m_class.clone = [](const Made& made, Made& copy) {
      copy.object = objectOf<T>(made).clone();
      return static_cast<bool>(copy.object);
    };
    m_class.equal = [](const Made& a, const Made& b) {
      return objectOf<T>(a).compare(&objectOf<T>(b)) && objectOf<T>(b) == objectOf<T>(a);
    };
  }

  void asComposite() {
    using gom::GenericObject;
    m_class.generic = [](const Made& made) { return objectOf<T>(made).wrappedObject(); };
    m_class.write = [](const Made& made, IStream& stream) {
      return objectOf<T>(made).wrappedObject()->write(stream);
    };
    m_class.readInto = [](Made& made, IStream& stream) {
      return objectOf<T>(made).wrappedObject()->read(stream);
    };
    m_class.isEmpty = [](const Made& made) {
      return objectOf<T>(made).wrappedObject()->propertyCount() == 0;
    };
    m_class.read = [](Made& made, IStream& stream) {
      made.object = GenericObject::create(stream);
      return static_cast<bool>(made.object);
    };
    m_class.clone = [](const Made& made, Made& copy) {
      copy.object = objectOf<T>(made).wrappedObject()->clone();
      return static_cast<bool>(copy.object);
    };
    m_class.equal = [](const Made& a, const Made& b) {
      return *objectOf<T>(a).wrappedObject() == objectOf<GenericObject>(b);
    };
    m_class.wrap = [](Made& made, const Handle<GenericObject>& object) {
      made.object = T::create(object);
      return static_cast<bool>(made.object);
    };
  }

  SchemaClass m_class;
};

/// The classes that recipes know, each table in a file of its own.
std::vector<SchemaClass> recordClasses();
std::vector<SchemaClass> measurementClasses();
std::vector<SchemaClass> injectionClasses();

/// All of them, by name.
const std::map<std::string, SchemaClass>& schemaClasses();

}  // namespace trelvo::test
