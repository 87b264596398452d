#include "tools/trelvo/ImportReport.h"

#include <ostream>

namespace trelvo::tool {

namespace {

constexpr size_t kMaxEntries = 200;
constexpr std::string_view kFurther = "(further ones)";

// Room is left for the overflow entry, so that it can always be made.
template <typename Container>
std::string_view bounded(const Container& entries, std::string_view name) {
  const bool known = entries.find(name) != entries.end();
  return known || entries.size() < kMaxEntries ? name : kFurther;
}

void printPlaces(std::ostream& out, const std::vector<std::string>& places, bool more) {
  const char* separator = ": ";
  for (const std::string& place : places) {
    out << separator << place;
    separator = ", ";
  }
  out << (more ? ", ...\n" : "\n");
}

}  // namespace

void ImportReport::count(std::string_view kind, const ImportPlace& place) {
  const std::string_view name = bounded(m_kinds, kind);
  auto found = m_kinds.find(name);
  if (found == m_kinds.end()) {
    found = m_kinds.emplace(name, Entry()).first;
  }
  Entry& entry = found->second;
  ++entry.count;
  if (entry.places.size() < kPlaces) {
    entry.places.push_back(std::string(place.file) + ":" + std::to_string(place.line));
  }
}

void ImportReport::notStored(std::string_view field) {
  if (m_notStored.count(field) == 0) {
    m_notStored.emplace(bounded(m_notStored, field));
  }
}

unsigned long long ImportReport::countOf(std::string_view kind) const {
  const auto found = m_kinds.find(kind);
  return found == m_kinds.end() ? 0 : found->second.count;
}

void ImportReport::print(std::ostream& out) const {
  for (const auto& [kind, entry] : m_kinds) {
    out << "trelvo: " << entry.count << " x " << kind;
    printPlaces(out, entry.places, entry.count > entry.places.size());
  }
  const char* separator = "trelvo: not stored, no place in the schema: ";
  for (const std::string& field : m_notStored) {
    out << separator << field;
    separator = ", ";
  }
  out << (m_notStored.empty() ? "" : "\n");
}

}  // namespace trelvo::tool
