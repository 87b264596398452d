"""vtables.py sees what moves a slot."""

import pathlib
import tempfile
import unittest

import vtables

HEADER = """
#pragma once
#define DECLARE(name) \\
  virtual void name();
namespace trelvo::core {
/// virtual void inAComment();
class TRELVO_EXPORT ITimer : public gom::ReferenceCountable {
 public:
  enum class Kind : unsigned char { One, Two };
  ~ITimer() override;
  [[nodiscard]] virtual bool start(unsigned int delayMs, unsigned int periodMs) = 0;
  virtual void post(void (*function)(void*), void* data) = 0;
  virtual void post(IReceiver* receiver, void* data) = 0;
  virtual unsigned int delay() const { return 0; }
  bool isShort() const { return delay() < 5; }
  struct Inner { virtual ~Inner() = default; int x = 0; };
};
class LinTimer : public ITimer, private IPollSink {
 public:
  void handlePollEvent(const pollfd& descriptor) override;
  virtual void added(std::map<int, int> table);
};
class Plain {};
}  // namespace trelvo::core
namespace trelvo::core {
class IPollSink {
 public:
  virtual ~IPollSink();
  virtual void handlePollEvent(const pollfd& descriptor) = 0;
};
}
namespace trelvo::gom {
class ReferenceCountable {
 protected:
  virtual ~ReferenceCountable();
};
template <class T>
class List : public ReferenceCountable, public std::vector<T> {
  virtual T at(int) const = 0;
};
}
"""

TIMER = ["~", "~", "start(vv)", "post(fv)", "post(vv)", "delay() const"]


class Headers(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / "include").mkdir()

    def read(self, text=HEADER):
        (self.root / "include" / "all.h").write_text(text)
        return vtables.read_headers(self.root)

    def slots(self, name):
        return vtables.slots(name, self.read())

    def test_functions_stand_in_their_order(self):
        self.assertEqual(self.slots("trelvo::core::ITimer"), TIMER)

    def test_what_overrides_a_further_base_has_a_slot_too(self):
        self.assertEqual(self.slots("trelvo::core::LinTimer"),
                         TIMER + ["handlePollEvent(v)", "added(v)"])

    def test_classes_in_classes_and_templates_count(self):
        self.assertEqual(self.slots("trelvo::core::ITimer::Inner"), ["~", "~"])
        self.assertEqual(self.slots("trelvo::gom::List"), ["~", "~", "at(v) const"])

    def test_the_list_names_polymorphic_classes_with_bases_and_functions(self):
        text = vtables.listing(self.read())
        self.assertIn("trelvo::core::LinTimer : trelvo::core::ITimer, trelvo::core::IPollSink\n"
                      "  void handlePollEvent(const pollfd& descriptor) override\n"
                      "  void added(std::map<int, int> table)\n", text)
        self.assertNotIn("Plain", text)
        self.assertNotIn("inAComment", text)

    def test_a_moved_an_added_and_a_lost_function_are_refused(self):
        kept = self.root / "list"
        kept.write_text(vtables.listing(self.read()))
        vtables.check_list(self.read(), kept)
        start, post = HEADER.split("\n")[10:12]
        for changed in (HEADER.replace(f"{start}\n{post}", f"{post}\n{start}"),
                        HEADER.replace(start, f"{start}\n  virtual void added();"),
                        HEADER.replace(start + "\n", ""),
                        HEADER.replace("ITimer, private IPollSink", "ITimer")):
            self.assertNotEqual(changed, HEADER)
            with self.assertRaises(SystemExit):
                vtables.check_list(self.read(changed), kept)


class Symbols(unittest.TestCase):
    def test_symbols_and_declarations_agree(self):
        for symbol, signature in (
                ("trelvo::core::LinTimer::~LinTimer()", "~"),
                ("trelvo::core::LinTimer::start(unsigned int, unsigned int)", "start(vv)"),
                ("trelvo::A::post(void (*)(void*), void*)", "post(fv)"),
                ("trelvo::A::path[abi:cxx11]() const", "path() const"),
                ("trelvo::A::read(std::map<int, std::pair<int, int>, A<int> >&)", "read(v)"),
                ("trelvo::gom::List<trelvo::A>::at(int) const", "at(v) const")):
            self.assertEqual(vtables.signature_of_symbol(symbol), signature)

    def test_a_slot_with_another_function_is_told(self):
        names = {name: f"trelvo::A::{name}()" for name in ("first", "second")}
        declared = ["first()", "second()"]
        self.assertEqual(list(vtables.mismatches(declared, ["first", "second"], names)), [])
        self.assertEqual(list(vtables.mismatches(declared, ["first", vtables.PURE], names)), [])
        self.assertEqual(list(vtables.mismatches(declared, ["second", "first"], names)),
                         ["slot 0 is trelvo::A::second(), declared is first()",
                          "slot 1 is trelvo::A::first(), declared is second()"])
        self.assertEqual(list(vtables.mismatches(declared, ["first"], names)),
                         ["1 slots, declared are 2"])


if __name__ == "__main__":
    unittest.main()
