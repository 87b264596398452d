#include "tools/trelvo/QengImporter.h"

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

constexpr std::string_view kQuestion = "AT+QENG";
constexpr std::string_view kAnswer = "+QENG:";
constexpr std::string_view kServing = "servingcell";
constexpr std::string_view kIntra = "neighbourcell intra";
constexpr std::string_view kInter = "neighbourcell inter";
constexpr size_t kMostFields = 64;

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// What else a modem says in such a dialogue: echoes of commands and the ends of answers.
bool isDialogue(std::string_view line) {
  return startsWith(line, "AT") || line == "OK" || line == "ERROR" ||
         startsWith(line, "+CME ERROR:");
}

std::string_view unquoted(std::string_view field) {
  const bool quoted = field.size() >= 2 && field.front() == '"' && field.back() == '"';
  return quoted ? field.substr(1, field.size() - 2) : field;
}

std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> fields;
  while (fields.size() < kMostFields) {
    const size_t comma = text.find(',');
    fields.push_back(unquoted(trimmed(text.substr(0, comma))));
    if (comma == std::string_view::npos) {
      break;
    }
    text.remove_prefix(comma + 1);
  }
  return fields;
}

bool isKnown(std::string_view field) { return !field.empty() && field != "-"; }

// Puts single columns into a cell.
class ColumnReader {
 public:
  ColumnReader(HeardCell& cell, std::string_view kind)
      : m_cell(cell), m_kind(kind), m_limits(cellLimits(cell.radio)) {}

  void read(QengColumn column, std::string_view field) {
    if (!isKnown(field)) {
      return;
    }
    switch (column) {
      case QengColumn::Mcc:
        return whole(m_cell.mcc, "MCC", field, 10, kMostNetworkCode);
      case QengColumn::Mnc:
        return whole(m_cell.mnc, "MNC", field, 10, kMostNetworkCode);
      case QengColumn::Area:
        return whole(m_cell.area, "area code", field, 16, kMostAreaCode);
      case QengColumn::CellId:
        return whole(m_cell.cellId, "cell identity", field, 16, m_limits.cellId);
      case QengColumn::Code:
        return whole(m_cell.code, "code of the cell", field, 10, m_limits.code);
      case QengColumn::Channel:
        return whole(m_cell.channel, "channel", field, 10, m_limits.channel);
      case QengColumn::Level:
        return measured(m_cell.level, "level", field, isHeardLevel);
      case QengColumn::Quality:
        return measured(m_cell.quality, "quality", field, isHeardQuality);
      case QengColumn::Other:
      case QengColumn::End:
        m_cell.notes.report.notStored("QENG " + std::string(m_kind) + " further columns");
    }
  }

 private:
  void whole(std::optional<long long>& target, const char* name, std::string_view field, int base,
             long long most) {
    target = wholeNumber(field, base, most);
    refuseUnless(target.has_value(), name);
  }

  void measured(std::optional<double>& target, const char* name, std::string_view field,
                bool (*fits)(double)) {
    const auto value = decimal(field);
    refuseUnless(value && fits(*value), name);
    target = value && fits(*value) ? value : std::nullopt;
  }

  void refuseUnless(bool good, const char* name) {
    if (!good) {
      m_cell.notes.count(std::string("QENG ") + name + " that cannot be read, left out");
    }
  }

  HeardCell& m_cell;
  std::string_view m_kind;
  const CellLimits& m_limits;
};

}  // namespace

bool QengImporter::looksLikeQeng(std::string_view line) {
  return startsWith(line, kQuestion) || startsWith(line, kAnswer);
}

bool QengImporter::run() {
  const unsigned long long before = m_target.count();
  for (std::string_view line; m_lines.next(line);) {
    add(trimmed(line));
  }
  finish();
  return m_target.count() > before;
}

void QengImporter::add(std::string_view line) {
  const bool follows = m_answerFollows;
  m_answerFollows = false;
  if (startsWith(line, kAnswer)) {
    const std::string_view answer = trimmed(line.substr(kAnswer.size()));
    m_answerFollows = answer.empty();
    if (!answer.empty()) addAnswer(answer);
  } else if (follows && startsWith(line, "\"")) {
    addAnswer(line);
  } else if (!line.empty() && !isDialogue(line)) {
    notes().count(kStrayLine);
  }
}

void QengImporter::addAnswer(std::string_view answer) {
  const Fields fields = split(answer);
  const std::string_view kind = fields.front();
  if (kind == kServing) {
    addServing(fields);
  } else if (qengRadio(kind) || startsWith(kind, "NR5G")) {
    addCell(kServing, fields, 0);
  } else {
    if ((kind == kIntra || kind == kInter) && !m_servingRadio) {
      m_servingRadio = CellRadio::Lte;
    }
    addCell(kind, fields, 1);
  }
}

// "servingcell", the state of the modem, and, except beside a 5G cell, the cell.
void QengImporter::addServing(const Fields& fields) {
  constexpr size_t kRadio = 2;
  finish();
  m_servingRadio.reset();
  if (fields.size() > kRadio) {
    addCell(kServing, fields, kRadio);
  } else if (fields.back() == "SEARCH") {
    notes().count(kNoCell);
  }
}

void QengImporter::addCell(std::string_view kind, const Fields& fields, size_t radioAt) {
  const std::string_view name = radioAt < fields.size() ? fields[radioAt] : std::string_view();
  const auto radio = qengRadio(name);
  if (!radio) {
    notes().count("unknown radio type '" + printable(name, 20) + "'");
    return;
  }
  const bool serving = kind == kServing;
  m_servingRadio = serving ? radio : m_servingRadio;
  const QengLayout* const layout = qengLayout(kind, *radio, m_servingRadio);
  const size_t from = radioAt + 1;
  if (layout == nullptr || fields.size() - from < layout->size()) {
    notes().count(kUnknownLayout);
    return;
  }
  if (m_cells.size() == kMostCells) {
    finish();
  }
  m_cells.push_back(readCell(*layout, fields, from));
  m_cells.back().serving = serving;
}

HeardCell QengImporter::readCell(const QengLayout& layout, const Fields& fields, size_t from) {
  HeardCell cell(notes(), "QENG", layout.radio);
  cell.timeStamp = m_clock.time;
  ColumnReader reader(cell, layout.kind);
  const size_t known = layout.size();
  for (size_t i = from; i < fields.size(); ++i) {
    reader.read(i - from < known ? layout.columns[i - from] : QengColumn::Other, fields[i]);
  }
  return cell;
}

void QengImporter::finish() {
  if (m_cells.empty()) {
    return;
  }
  const ImportNotes place = m_cells.front().notes;
  const auto container = made(schema::MeasurementContainer::create());
  addHeardCells(m_cells, *container);
  m_cells.clear();
  if (container->isEmpty()) {
    return;
  }
  if (!m_clock.time) {
    place.count(kNoClock);
  }
  m_target.put(*container);
}

}  // namespace trelvo::tool
