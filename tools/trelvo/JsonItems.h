#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <stdexcept>
#include <string>

#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"

namespace trelvo::tool {

/// Takes items out of JSON documents one at a time. Several documents may stand one behind the
/// other, one a line for instance. Items are either each document as a whole, or the elements of
/// its top-level array "items", and then everything outside of that is passed over:
///
///     {"items": [ELEMENT, ELEMENT, ...]}
///
/// Memory: one item. One of more than kMaxItemBytes is passed over and complained of; a
/// string or number of more than kMaxTokenBytes and nesting beyond kMaxDepth end the reading.
/// Threads: one at a time.
class JsonItems {
 public:
  static constexpr size_t kMaxItemBytes = 1 << 20;
  static constexpr size_t kMaxTokenBytes = 1 << 16;
  static constexpr int kMaxDepth = 64;

  static constexpr const char* kOversize = "item of more than 1 MiB";
  static constexpr const char* kNoItems = "document without a list of items";

  static constexpr const char* kDamaged = "damaged JSON, the rest of the file is not read";

  /// What an item is.
  enum class Form { ElementsOfItems, WholeDocuments };

  /// The input is no JSON, breaks off, or exceeds a limit. what() says which; the place is that of
  /// the source.
  struct Damage : std::runtime_error {
    using std::runtime_error::runtime_error;
  };

  /// Gets an item and the line in which it starts.
  using ItemHandler = std::function<void(const nlohmann::json& item, unsigned long long line)>;
  /// Gets a complaint, kOversize or kNoItems, and the line that it is about.
  using ComplaintHandler = std::function<void(const char* complaint, unsigned long long line)>;

  JsonItems(ImportSource& source, Form form, ItemHandler onItem, ComplaintHandler onComplaint);

  /// Reads to the end of the input. Throws Damage; the items ahead of the damage were handed out.
  void run();

  /// The same, but counts damage in `report` instead of throwing. @return whether there was none.
  bool runToDamage(ImportReport& report);

  /// Documents so far whose array "items" was empty.
  unsigned long long emptyLists() const { return m_emptyLists; }

 private:
  ImportSource& m_source;
  Form m_form;
  ItemHandler m_onItem;
  ComplaintHandler m_onComplaint;
  unsigned long long m_emptyLists = 0;
};

}  // namespace trelvo::tool
