#include "tools/trelvo/NmeaImporter.h"

#include <algorithm>
#include <vector>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

constexpr size_t kOpenEpochs = 2;
constexpr long long kMicrosecondsPerSecond = 1000000;
constexpr long long kSecondsPerDay = 86400;
constexpr long long kHalfDay = kSecondsPerDay / 2 * kMicrosecondsPerSecond;
constexpr unsigned int kFixSentences = 0x83;  // GGA, RMC, GNS

}  // namespace

std::optional<long long> NmeaClock::dayOf(const NmeaEpoch& epoch) {
  if (const auto date = epoch.date()) {
    m_day = daysFromEpoch(*date);
  } else if (m_day && m_timeOfDay && epoch.timeOfDay &&
             *m_timeOfDay - *epoch.timeOfDay > kHalfDay) {
    ++*m_day;
  }
  if (epoch.timeOfDay) {
    m_timeOfDay = epoch.timeOfDay;
  }
  return m_day;
}

long long NmeaClock::dayBefore(long long day, long long later, long long earlier) {
  return earlier - later > kHalfDay ? day - 1 : day;
}

NmeaImporter::NmeaImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
                           std::optional<NmeaDate> date)
    : m_source(source),
      m_report(report),
      m_target(target),
      m_date(date),
      m_reader(source, report) {}

bool NmeaImporter::run() {
  NmeaSentence sentence;
  bool any = false;
  while (m_reader.next(sentence)) {
    any = true;
    add(sentence);
  }
  while (!m_open.empty()) {
    close();
  }
  giveUpOnDates(0);
  return any;
}

void NmeaImporter::add(const NmeaSentence& sentence) {
  const NmeaSentenceKind* kind = nmeaSentenceKind(sentence.type());
  if (kind == nullptr || kind->read == nullptr) {
    m_report.notStored("sentence " + printable(sentence.type(), 10));
  }
  if (kind == nullptr) {
    return;
  }
  m_current = epochFor(sentence, *kind);
  if (m_current != nullptr) {
    m_current->seen |= kind->bit;
  }
  if (m_current != nullptr && kind->read != nullptr) {
    kind->read(sentence, *m_current, notesAt(sentence.line));
  }
}

NmeaEpoch* NmeaImporter::epochFor(const NmeaSentence& sentence, const NmeaSentenceKind& kind) {
  const std::string_view time = sentence.field(kind.timeField);
  if (kind.timeField == 0 || (time.empty() && !kind.isFix)) {
    return m_current;
  }
  const auto timeOfDay = nmeaTimeOfDay(time);
  if (!timeOfDay && !time.empty()) {
    m_report.count(kBadNmeaField, {m_source.name(), sentence.line});
  }
  // Without a time nothing tells epochs apart but that each kind of sentence comes once.
  const bool joins = m_current != nullptr && !m_current->timeOfDay && !(m_current->seen & kind.bit);
  return !timeOfDay && joins ? m_current : epochAt(timeOfDay, sentence.line);
}

NmeaEpoch* NmeaImporter::epochAt(std::optional<long long> timeOfDay, unsigned long long line) {
  const auto found = std::find_if(m_open.begin(), m_open.end(), [&](const NmeaEpoch& epoch) {
    return timeOfDay && epoch.timeOfDay == timeOfDay;
  });
  if (found != m_open.end()) {
    return &*found;
  }
  if (m_open.size() == kOpenEpochs) {
    close();
  }
  m_open.emplace_back();
  m_open.back().timeOfDay = timeOfDay;
  m_open.back().line = line;
  return &m_open.back();
}

void NmeaImporter::close() {
  const NmeaEpoch epoch = m_open.front();
  m_open.pop_front();
  finish(epoch);
}

void NmeaImporter::finish(const NmeaEpoch& epoch) {
  if (!epoch.hasFix) {
    if (epoch.seen & kFixSentences) {
      m_report.count(kNoFix, {m_source.name(), epoch.line});
    }
    return;
  }
  if (const auto day = m_clock.dayOf(epoch)) {
    releaseHeld(*day, epoch.timeOfDay);
    store(epoch, day);
  } else {
    hold(epoch);
  }
}

void NmeaImporter::hold(const NmeaEpoch& epoch) {
  m_held.push_back(epoch);
  if (m_held.size() > kMaxHeld) {
    giveUpOnDates(kMaxHeld);
  }
}

// The day is known of what follows the held epochs: count the midnights backwards from there.
void NmeaImporter::releaseHeld(long long day, std::optional<long long> timeOfDay) {
  std::vector<long long> days(m_held.size());
  for (size_t i = m_held.size(); i-- > 0;) {
    const auto earlier = m_held[i].timeOfDay;
    if (earlier && timeOfDay) {
      day = NmeaClock::dayBefore(day, *timeOfDay, *earlier);
    }
    days[i] = day;
    timeOfDay = earlier ? earlier : timeOfDay;
  }
  for (size_t i = 0; i < days.size(); ++i) {
    store(m_held[i], days[i]);
  }
  m_held.clear();
}

// Stores held epochs until `keep` are left; an assumed date dates them and all that follow.
void NmeaImporter::giveUpOnDates(size_t keep) {
  if (m_date && !m_held.empty()) {
    m_clock.assume(daysFromEpoch(*m_date));
    keep = 0;
  }
  while (m_held.size() > keep) {
    const NmeaEpoch epoch = m_held.front();
    m_held.pop_front();
    const auto day = m_date ? m_clock.dayOf(epoch) : std::nullopt;
    m_report.count(m_date ? kAssumedDate : kNoDate, {m_source.name(), epoch.line});
    store(epoch, day);
  }
}

void NmeaImporter::store(const NmeaEpoch& epoch, std::optional<long long> day) {
  const ImportNotes notes = notesAt(epoch.line);
  ImportFix fix = fixOf(epoch, notes);
  if (!epoch.timeOfDay) {
    notes.count(kNoTime);
  } else if (day) {
    fix.timeStamp = timeStampOf(*day * kSecondsPerDay + *epoch.timeOfDay / kMicrosecondsPerSecond);
    if (!fix.timeStamp) {
      notes.count(kBadTime);
    }
  }
  const auto measurement = makeGnssMeasurement(fix, notes);
  if (!measurement) {
    return;
  }
  const auto container = made(schema::MeasurementContainer::create());
  expectStored(container->addGnssMeasurement(measurement->wrappedObject()));
  m_target.put(*container);
}

ImportNotes NmeaImporter::notesAt(unsigned long long line) const {
  return {m_report, {m_source.name(), line}};
}

}  // namespace trelvo::tool
