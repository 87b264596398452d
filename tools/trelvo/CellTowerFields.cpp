#include "tools/trelvo/CellTowerFields.h"

#include <charconv>
#include <string>

namespace trelvo::tool {

namespace {

constexpr const char* kNoNumber = "is no number, left out";
constexpr const char* kOutOfRange = "out of range, left out";

template <class Number>
std::errc parse(std::string_view text, Number& value) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr != end ? std::errc::invalid_argument : result.ec;
}

// A value within [least, most]; NaN is in no range.
template <class Number>
std::optional<Number> read(const CellTowerFields& fields, CellTowerColumn column, Number least,
                           Number most) {
  const std::string_view text = fields.text(column);
  if (text.empty()) {
    return std::nullopt;
  }
  Number value{};
  const std::errc error = parse(text, value);
  if (error == std::errc() && value >= least && value <= most) {
    return value;
  }
  fields.refuse(column, error == std::errc::invalid_argument ? kNoNumber : kOutOfRange);
  return std::nullopt;
}

}  // namespace

std::optional<double> CellTowerFields::number(CellTowerColumn column, double least,
                                              double most) const {
  return read(*this, column, least, most);
}

std::optional<long long> CellTowerFields::integer(CellTowerColumn column, long long least,
                                                  long long most) const {
  return read(*this, column, least, most);
}

std::optional<long long> CellTowerFields::code(CellTowerColumn column, long long least,
                                               long long most) const {
  constexpr std::string_view kUnknown = "-1";
  return text(column) == kUnknown ? std::nullopt : integer(column, least, most);
}

void CellTowerFields::refuse(CellTowerColumn column, const char* complaint) const {
  m_notes.count("cell tower " + std::string(nameOf(column)) + " " + complaint);
}

void CellTowerFields::notStored(CellTowerColumn column, const char* radio) const {
  if (!text(column).empty()) {
    const std::string name = "cell tower " + std::string(nameOf(column));
    m_notes.report.notStored(radio == nullptr ? name : name + " of " + radio);
  }
}

}  // namespace trelvo::tool
