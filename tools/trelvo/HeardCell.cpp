#include "tools/trelvo/HeardCell.h"

#include <algorithm>
#include <string>

#include "tools/trelvo/CellRadios.h"

namespace trelvo::tool {

namespace {

constexpr CellLimits kLimits[] = {
    {65535, 63, 65535, 255},        // GSM: CID, BSIC, ARFCN
    {0xFFFFFFF, 511, 65535, 0},     // WCDMA: UTRAN cell identity, scrambling code, UARFCN
    {0xFFFFFFF, 503, 65535, 65535}  // LTE: E-UTRAN cell identity, PCI, EARFCN
};

// The cell measurements of one radio network of one moment.
template <class Radio>
class CellGroup {
 public:
  using Cell = typename Radio::Cell;

  void addServing(const HeardCell& heard) {
    const auto dn = dnOf<Radio>(heard);
    const auto serving = servingOf<Radio>(heard);
    if (dn->isEmpty() && serving->isEmpty()) {
      heard.notes.count(kEmptyTower);
      return;
    }
    const auto cell = newCell(heard);
    if (!dn->isEmpty()) expectStored(cell->setDn(dn));
    if (!serving->isEmpty()) expectStored(cell->setServingCellMeasurement(serving));
  }

  void addNeighbour(const HeardCell& heard) {
    const auto nw = made(Radio::Nw::create());
    Radio::setNeighbour(*nw, heard);
    Radio::setHeard(*nw, heard);
    if (nw->isEmpty()) {
      heard.notes.count(kEmptyTower);
      return;
    }
    const auto cell = m_cells.empty() ? newCell(heard) : m_cells.front();
    nameLost(heard, *cell);
    expectStored(cell->addNwMeasurement(nw));
  }

  void store(schema::MeasurementContainer& container) const {
    for (const auto& cell : m_cells) {
      expectStored((container.*Radio::kAdd)(cell->wrappedObject()));
    }
  }

 private:
  gom::SharedPointer<Cell> newCell(const HeardCell& heard) {
    m_cells.push_back(made(Cell::create()));
    if (heard.timeStamp) {
      expectStored(m_cells.back()->setTimeStamp(*heard.timeStamp));
    }
    return m_cells.back();
  }

  // A neighbour's record has no network code and no time: they are those of its serving cell.
  static void nameLost(const HeardCell& heard, const Cell& cell) {
    const auto dn = cell.dn();
    const std::string name = heard.name;
    if ((heard.mcc && (!dn || dn->mcc() != *heard.mcc)) ||
        (heard.mnc && (!dn || dn->mnc() != *heard.mnc))) {
      heard.notes.report.notStored(name + " network codes of a neighbour in another network");
    }
    if (heard.timeStamp && *heard.timeStamp != cell.timeStamp()) {
      heard.notes.report.notStored(name + ".age of a neighbour");
    }
    if (heard.timingAdvance) {
      heard.notes.report.notStored(name + ".timingAdvance of a neighbour");
    }
  }

  std::vector<gom::SharedPointer<Cell>> m_cells;
};

using Cells = std::vector<HeardCell>;

std::vector<bool> servingFlags(const Cells& cells) {
  std::vector<bool> flags;
  for (const HeardCell& cell : cells) {
    flags.push_back(cell.serving.value_or(false));
  }
  if (std::find(flags.begin(), flags.end(), true) == flags.end()) {
    const auto first = std::find_if(cells.begin(), cells.end(),
                                    [](const HeardCell& cell) { return !cell.serving; });
    if (first != cells.end()) {
      flags[static_cast<size_t>(first - cells.begin())] = true;
    }
  }
  return flags;
}

template <class Radio>
void addGroup(const Cells& cells, const std::vector<bool>& serving,
              schema::MeasurementContainer& container) {
  CellGroup<Radio> group;
  for (const bool wanted : {true, false}) {
    for (size_t i = 0; i < cells.size(); ++i) {
      if (cells[i].radio == Radio::kRadio && serving[i] == wanted) {
        wanted ? group.addServing(cells[i]) : group.addNeighbour(cells[i]);
      }
    }
  }
  group.store(container);
}

}  // namespace

const CellLimits& cellLimits(CellRadio radio) { return kLimits[static_cast<size_t>(radio)]; }

void addHeardCells(const Cells& cells, schema::MeasurementContainer& container) {
  const std::vector<bool> serving = servingFlags(cells);
  addGroup<GsmRadio>(cells, serving, container);
  addGroup<WcdmaRadio>(cells, serving, container);
  addGroup<LteRadio>(cells, serving, container);
}

}  // namespace trelvo::tool
