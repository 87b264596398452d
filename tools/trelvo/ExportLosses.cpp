#include "tools/trelvo/ExportLosses.h"

#include <ostream>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {
namespace {

constexpr std::size_t kMaxKinds = 200;
constexpr std::string_view kFurther = "(further ones)";

}  // namespace

void ExportLosses::add(std::string_view kind, std::uint64_t container) {
  const bool isNew = m_kinds.find(kind) == m_kinds.end();
  const std::string_view name = isNew && m_kinds.size() >= kMaxKinds ? kFurther : kind;
  auto found = m_kinds.find(name);
  if (found == m_kinds.end()) {
    found = m_kinds.emplace(name, Entry{0, container}).first;
  }
  ++found->second.count;
}

std::uint64_t ExportLosses::countOf(std::string_view kind) const {
  const auto found = m_kinds.find(kind);
  return found == m_kinds.end() ? 0 : found->second.count;
}

void ExportLosses::print(std::ostream& out, std::string_view format) const {
  constexpr std::size_t kLongest = 160;
  for (const auto& [kind, entry] : m_kinds) {
    out << "trelvo: not carried by " << format << ": " << printable(kind, kLongest) << " ("
        << entry.count << " x, first in object " << entry.first << ")\n";
  }
  out.flush();
}

}  // namespace trelvo::tool
