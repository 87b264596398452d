#pragma once

#include <deque>
#include <optional>

#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/NmeaEpoch.h"
#include "tools/trelvo/NmeaReader.h"

namespace trelvo::tool {

/// Keeps the day while a log runs: sentences tell the time of day, and only some of them the date.
class NmeaClock {
 public:
  /// Days from 1970-01-01 to the day of `epoch`: by the epoch's own date, else the day of the one
  /// before, moved on by one where the time of day fell by more than half a day. Nothing while no
  /// epoch has told a date.
  std::optional<long long> dayOf(const NmeaEpoch& epoch);

  /// Starts on `day` as if an epoch had told it.
  void assume(long long day) { m_day = day; }

  /// The day of an epoch at `earlier`, when the next epoch is at `later` on `day`.
  static long long dayBefore(long long day, long long later, long long earlier);

 private:
  std::optional<long long> m_day;
  std::optional<long long> m_timeOfDay;
};

/// Makes measurement containers of a receiver's log: one container with one GNSS measurement for
/// each epoch with a fix.
///
/// Sentences of one time of day, to the fraction of a second and whatever their talkers, are one
/// epoch. Sentences without a time belong to the one before them. Two epochs are kept open, so that
/// a sentence that comes late, behind the first one of the next second, still finds its own.
///
/// Dates come from RMC or ZDA. Fixes ahead of the first date are held back, at most kMaxHeld of
/// them, and dated backwards from it. When no date comes they get the day of the option, or no time
/// stamp at all; they are never dropped.
///
/// Memory: independent of the length of the log. Threads: one at a time.
class NmeaImporter {
 public:
  static constexpr size_t kMaxHeld = 1000;

  static constexpr const char* kNoFix = "epoch without a fix";
  static constexpr const char* kNoDate = "fix without a date, stored without a time stamp";
  static constexpr const char* kNoTime = "fix without a time of day, stored without a time stamp";
  static constexpr const char* kAssumedDate = "fix without a date, dated by --date";

  /// `date` is the day of fixes whose log names none.
  NmeaImporter(ImportSource& source, ImportReport& report, ImportTarget& target,
               std::optional<NmeaDate> date);

  /// Reads to the end. @return whether there was a single sentence with a good checksum.
  bool run();

 private:
  void add(const NmeaSentence& sentence);
  NmeaEpoch* epochFor(const NmeaSentence& sentence, const NmeaSentenceKind& kind);
  NmeaEpoch* epochAt(std::optional<long long> timeOfDay, unsigned long long line);
  void close();
  void finish(const NmeaEpoch& epoch);
  void hold(const NmeaEpoch& epoch);
  void releaseHeld(long long day, std::optional<long long> timeOfDay);
  void giveUpOnDates(size_t keep);
  void store(const NmeaEpoch& epoch, std::optional<long long> day);
  ImportNotes notesAt(unsigned long long line) const;

  ImportSource& m_source;
  ImportReport& m_report;
  ImportTarget& m_target;
  std::optional<NmeaDate> m_date;
  NmeaReader m_reader;
  NmeaClock m_clock;
  std::deque<NmeaEpoch> m_open;  // oldest first
  NmeaEpoch* m_current = nullptr;
  std::deque<NmeaEpoch> m_held;  // oldest first
};

}  // namespace trelvo::tool
