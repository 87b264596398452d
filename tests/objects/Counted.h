#pragma once

#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::test {

/// A counted object that tells a flag when it dies.
class Counted : public gom::ReferenceCountable {
 public:
  explicit Counted(bool* died = nullptr) : m_died(died) {}
  Counted(const Counted&) = default;
  Counted& operator=(const Counted&) = default;
  ~Counted() override {
    if (m_died != nullptr) {
      *m_died = true;
    }
  }

  gom::SharedPointer<Counted> next;  ///< Another one, which this one keeps alive.

 private:
  bool* m_died;
};

/// One of a derived class.
class CountedMore : public Counted {
 public:
  using Counted::Counted;
};

}  // namespace trelvo::test
