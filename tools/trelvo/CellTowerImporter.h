#pragma once

#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Injection.h>

#include "tools/trelvo/CellTowerReader.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportSource.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Makes injections of a list of cell towers (see CellTowerReader): each row becomes a serving cell
/// injection, and each kBatch of them, in the order of the list, share one Injection.
///
/// | column              | GSM        | UMTS                 | LTE               | CDMA       |
/// |---------------------|------------|----------------------|-------------------|------------|
/// | stored as           | GERAN      | UTRA FDD             | E-UTRA            | CDMA       |
/// | mcc                 | dn.mcc     | dn.mcc               | dn.mcc            | not stored |
/// | net                 | dn.mnc     | dn.mnc               | dn.mnc            | dn.sid     |
/// | area                | dn.lac     | measurement lac      | measurement tac   | dn.nid     |
/// | cell                | dn.cid     | dn.ucid              | dn.ucid           | dn.bsid    |
/// | unit                | not stored | pcpich (0 to 511)    | pci (0 to 503)    | not stored |
/// | averageSignal, dBm  | rxLevel    | rscp                 | rsrp              | not stored |
/// | lat, lon, range     | coverage, all four                                                |
/// | updated             | timeStamp, all four                                               |
///
/// The range is the radius of a circle around the position: both axes of the coverage, in whole
/// metres, rounded; a range below one metre is stored as 1 and counted. Without a range the
/// coverage is the position alone.
///
/// An empty column is unknown, and so are -1 in the columns of the identity and unit, 0 in unit and
/// averageSignal (which is how exports write that there is none) and 0 in updated. Another value
/// that does not fit its field is left out and counted. A row is left out as a whole, and counted,
/// when its radio is none of the four (NR among them) or when what tells the cell apart, the
/// columns stored in its dn, is not complete: fewer columns would name a whole network.
///
/// Memory: one batch, independent of the length of the list. Threads: one at a time.
class CellTowerImporter {
 public:
  static constexpr unsigned int kBatch = 100;

  static constexpr const char* kNoIdentity = "cell tower without a complete identity, left out";
  static constexpr const char* kNoPosition = "cell tower without a usable position, no coverage";
  static constexpr const char* kSmallRange = "range below 1 m, stored as 1 m";

  CellTowerImporter(ImportSource& source, ImportReport& report, ImportTarget& target)
      : m_source(source), m_report(report), m_target(target) {}

  /// Reads to the end. @return whether a row was stored, or the list has a header and no rows.
  bool run();

 private:
  void add(const CellTowerRow& row);
  void flush();

  ImportSource& m_source;
  ImportReport& m_report;
  ImportTarget& m_target;
  gom::SharedPointer<schema::Injection> m_batch;
  unsigned int m_batched = 0;
};

}  // namespace trelvo::tool
