#include "tools/trelvo/JsonItems.h"

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

using nlohmann::json;

constexpr const char* kTooLong = "string or number of more than 64 KiB";
constexpr const char* kTooDeep = "nesting beyond 64 levels";

// The parser keeps a whole token in memory, so the bytes on their way to it are counted from the
// last byte that ends a token.
class TokenGuard {
 public:
  void pass(char byte) {
    bool ends = false;
    if (m_inString) {
      ends = byte == '"' && !m_escaped;
      m_escaped = byte == '\\' && !m_escaped;
      m_inString = !ends;
    } else {
      ends = isBetweenTokens(byte);
      m_inString = byte == '"';
    }
    m_length = ends ? 0 : m_length + 1;
    if (m_length > JsonItems::kMaxTokenBytes) {
      throw JsonItems::Damage(kTooLong);
    }
  }

 private:
  static bool isBetweenTokens(char byte) {
    return byte == ',' || byte == ':' || byte == '{' || byte == '}' || byte == '[' || byte == ']' ||
           byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
  }

  bool m_inString = false;
  bool m_escaped = false;
  size_t m_length = 0;
};

// An input iterator over a source, as the parser wants it. All copies share the source.
class SourceIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = char;

  SourceIterator() = default;
  SourceIterator(ImportSource& source, TokenGuard& guard) : m_source(&source), m_guard(&guard) {}

  char operator*() const { return static_cast<char>(m_source->peek()); }
  SourceIterator& operator++() {
    m_guard->pass(static_cast<char>(m_source->next()));
    return *this;
  }
  void operator++(int) { ++*this; }

  bool operator==(const SourceIterator& other) const { return atEnd() == other.atEnd(); }
  bool operator!=(const SourceIterator& other) const { return !(*this == other); }

 private:
  bool atEnd() const { return m_source == nullptr || m_source->peek() == ImportSource::kEnd; }

  ImportSource* m_source = nullptr;
  TokenGuard* m_guard = nullptr;
};

// Puts one element together from the parser's events.
class ItemBuilder {  // NOLINT(bugprone-exception-escape): moving a json value throws nothing
 public:
  void clear() {
    m_open.clear();
    m_item = json();
  }
  const json& item() const { return m_item; }

  void begin(json value) { m_open.push_back(place(std::move(value))); }
  void end() { m_open.pop_back(); }
  void add(json value) { place(std::move(value)); }
  void key(std::string text) { m_key = std::move(text); }

 private:
  json* place(json value) {
    if (m_open.empty()) {
      m_item = std::move(value);
      return &m_item;
    }
    json& parent = *m_open.back();
    if (parent.is_array()) {
      parent.push_back(std::move(value));
      return &parent.back();
    }
    json& member = parent[m_key];
    member = std::move(value);
    return &member;
  }

  json m_item;
  std::vector<json*> m_open;  // from the item inwards
  std::string m_key;
};

// Receives the parser's events of one document. The parser names them.
// NOLINTBEGIN(readability-identifier-naming)
class ItemCollector {
 public:
  using number_integer_t = json::number_integer_t;
  using number_unsigned_t = json::number_unsigned_t;
  using number_float_t = json::number_float_t;
  using string_t = json::string_t;
  using binary_t = json::binary_t;

  ItemCollector(ImportSource& source, JsonItems::Form form, const JsonItems::ItemHandler& onItem,
                const JsonItems::ComplaintHandler& onComplaint)
      : m_source(source),
        m_onItem(onItem),
        m_onComplaint(onComplaint),
        m_itemDepth(form == JsonItems::Form::WholeDocuments ? 0 : 2),
        m_inItems(m_itemDepth == 0) {}

  bool null() { return scalar(nullptr); }
  bool boolean(bool value) { return scalar(value); }
  bool number_integer(number_integer_t value) { return scalar(value); }
  bool number_unsigned(number_unsigned_t value) { return scalar(value); }
  bool number_float(number_float_t value, const string_t&) { return scalar(value); }
  bool string(string_t& value) { return scalar(std::move(value)); }
  bool binary(binary_t&) { return false; }

  bool start_object(std::size_t) { return open(json::object()); }
  bool end_object() { return close(); }
  bool start_array(std::size_t) {
    if (!m_inItems && m_depth == 1 && m_key == "items" && m_isObject) {
      m_inItems = true;
      m_hadItems = true;
      return deeper();
    }
    return open(json::array());
  }
  bool end_array() { return close(); }

  bool key(string_t& text) {
    if (isBuilding()) {
      m_builder.key(std::move(text));
    } else if (m_depth == 1) {
      m_key = text;
    }
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const json::exception& error) {
    const std::string text = error.what();
    const std::size_t detail = text.find(": ");
    throw JsonItems::Damage(detail == std::string::npos ? text : text.substr(detail + 2));
  }

  bool hadItems() const { return m_hadItems; }
  unsigned long long itemCount() const { return m_itemCount; }

 private:
  // Inside of the document the depth is 1, in the list of items 2.
  bool isItemStart() const { return m_inItems && m_depth == m_itemDepth; }

  bool isBuilding() {
    if (!m_inItems || m_depth <= m_itemDepth) {
      return false;
    }
    m_oversize = m_oversize || m_source.offset() - m_itemStart > JsonItems::kMaxItemBytes;
    return !m_oversize;
  }

  bool deeper() {
    if (++m_depth > JsonItems::kMaxDepth) {
      throw JsonItems::Damage(kTooDeep);
    }
    return true;
  }

  bool open(json value) {
    m_isObject = m_depth == 0 ? value.is_object() : m_isObject;
    if (isItemStart()) {
      m_oversize = false;
      m_itemStart = m_source.offset();
      m_itemLine = m_source.line();
      m_builder.clear();
      m_builder.begin(std::move(value));
    } else if (isBuilding()) {
      m_builder.begin(std::move(value));
    }
    return deeper();
  }

  bool close() {
    if (isBuilding()) {
      m_builder.end();
    }
    --m_depth;
    if (isItemStart()) {
      finishItem();
    }
    m_inItems = m_inItems && m_depth >= m_itemDepth;
    return true;
  }

  void finishItem() {
    ++m_itemCount;
    if (m_oversize) {
      m_onComplaint(JsonItems::kOversize, m_itemLine);
    } else {
      m_onItem(m_builder.item(), m_itemLine);
    }
    m_builder.clear();
  }

  template <typename Value>
  bool scalar(Value&& value) {
    if (isItemStart()) {
      ++m_itemCount;
      m_onItem(json(std::forward<Value>(value)), m_source.line());
    } else if (isBuilding()) {
      m_builder.add(json(std::forward<Value>(value)));
    }
    return true;
  }

  ImportSource& m_source;
  const JsonItems::ItemHandler& m_onItem;
  const JsonItems::ComplaintHandler& m_onComplaint;
  ItemBuilder m_builder;
  std::string m_key;  // of the document's member
  int m_depth = 0;
  bool m_isObject = false;
  int m_itemDepth;
  bool m_inItems;
  bool m_hadItems = false;
  bool m_oversize = false;
  unsigned long long m_itemCount = 0;
  unsigned long long m_itemStart = 0;
  unsigned long long m_itemLine = 0;
};
// NOLINTEND(readability-identifier-naming)

bool skipBlanks(ImportSource& source) {
  for (int byte = source.peek(); byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
       byte = source.peek()) {
    source.next();
  }
  return source.peek() != ImportSource::kEnd;
}

}  // namespace

JsonItems::JsonItems(ImportSource& source, Form form, ItemHandler onItem,
                     ComplaintHandler onComplaint)
    : m_source(source),
      m_form(form),
      m_onItem(std::move(onItem)),
      m_onComplaint(std::move(onComplaint)) {}

void JsonItems::run() {
  while (skipBlanks(m_source)) {
    TokenGuard guard;
    ItemCollector collector(m_source, m_form, m_onItem, m_onComplaint);
    const unsigned long long line = m_source.line();
    if (!json::sax_parse(SourceIterator(m_source, guard), SourceIterator(), &collector,
                         json::input_format_t::json, false)) {
      throw Damage("no JSON");
    }
    if (m_form == Form::ElementsOfItems && !collector.hadItems()) {
      m_onComplaint(kNoItems, line);
    }
    m_emptyLists += collector.hadItems() && collector.itemCount() == 0 ? 1 : 0;
  }
}

bool JsonItems::runToDamage(ImportReport& report) {
  try {
    run();
    return true;
  } catch (const Damage& damage) {
    report.count(kDamaged + (": " + printable(damage.what(), 160)), m_source.place());
    return false;
  }
}

}  // namespace trelvo::tool
