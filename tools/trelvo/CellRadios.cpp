#include "tools/trelvo/CellRadios.h"

#include <string>

#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {

namespace {

unsigned char byte(long long value) { return static_cast<unsigned char>(value); }
unsigned short narrow(long long value) { return static_cast<unsigned short>(value); }
unsigned int wide(long long value) { return static_cast<unsigned int>(value); }

int code(LevelScale scale, double value) { return levelCode(scale, value).value_or(0); }

template <class Nw, class Info>
void setInfo(Nw& nw, const gom::SharedPointer<Info>& info) {
  if (!info->isEmpty()) nw.setFrequencyInfo(info);
}

}  // namespace

void GsmRadio::setDn(Dn& dn, const HeardCell& cell) {
  if (cell.area) dn.setLac(narrow(*cell.area));
  if (cell.cellId) dn.setCid(narrow(*cell.cellId));
}

void GsmRadio::setNeighbour(Nw& nw, const HeardCell& cell) {
  if (cell.area) nw.setLac(narrow(*cell.area));
  if (cell.cellId) nw.setCid(narrow(*cell.cellId));
}

void GsmRadio::setHeard(Nw& nw, const HeardCell& cell) {
  const auto info = made(schema::GeranFrequencyInfo::create());
  if (cell.channel) info->setArfcn(narrow(*cell.channel));
  if (cell.code) info->setBsic(byte(*cell.code));
  setInfo(nw, info);
  if (cell.level) nw.setRxLevel(byte(code(LevelScale::GeranRxLev, *cell.level)));
}

void GsmRadio::setServing(Serving& serving, const HeardCell& cell) {
  if (cell.timingAdvance) serving.setTimingAdvance(byte(*cell.timingAdvance));
}

void WcdmaRadio::setDn(Dn& dn, const HeardCell& cell) {
  if (cell.cellId) dn.setUcid(wide(*cell.cellId));
}

void WcdmaRadio::setNeighbour(Nw& nw, const HeardCell& cell) {
  if (cell.cellId) nw.setUcid(wide(*cell.cellId));
  if (cell.area) {
    cell.notes.report.notStored(cell.name + std::string(".locationAreaCode of a WCDMA neighbour"));
  }
}

void WcdmaRadio::setHeard(Nw& nw, const HeardCell& cell) {
  const auto info = made(schema::UtraFddFrequencyInfo::create());
  if (cell.channel) info->setUarfcnDl(narrow(*cell.channel));
  if (cell.code) info->setPcpich(narrow(*cell.code));
  setInfo(nw, info);
  if (cell.level) {
    nw.setRscp(static_cast<signed char>(code(LevelScale::UtraFddRscp, *cell.level)));
  }
  if (cell.quality) nw.setEcNo(byte(code(LevelScale::UtraFddEcNo, *cell.quality)));
  if (cell.pathLoss) nw.setPathloss(byte(*cell.pathLoss));
}

void WcdmaRadio::setServing(Serving& serving, const HeardCell& cell) {
  if (cell.area) serving.setLac(narrow(*cell.area));
}

void LteRadio::setDn(Dn& dn, const HeardCell& cell) {
  if (cell.cellId) dn.setUcid(wide(*cell.cellId));
}

void LteRadio::setNeighbour(Nw& nw, const HeardCell& cell) {
  if (cell.cellId) nw.setUcid(wide(*cell.cellId));
}

void LteRadio::setHeard(Nw& nw, const HeardCell& cell) {
  const auto info = made(schema::EUtraFrequencyInfo::create());
  if (cell.channel) info->setEarfcn(narrow(*cell.channel));
  if (cell.code) info->setPci(narrow(*cell.code));
  setInfo(nw, info);
  if (cell.area) nw.setTac(narrow(*cell.area));
  if (cell.level) nw.setRsrp(byte(code(LevelScale::EUtraRsrp, *cell.level)));
  if (cell.quality) nw.setRsrq(byte(code(LevelScale::EUtraRsrq, *cell.quality)));
}

void LteRadio::setServing(Serving& serving, const HeardCell& cell) {
  if (cell.timingAdvance) serving.setTimingAdvance(narrow(*cell.timingAdvance));
}

}  // namespace trelvo::tool
