#pragma once

#include "tests/crypto/BlockFile.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {

/// The encrypted block file told block by block, with no cipher but an exclusive or, over a file
/// that is a vector. It knows no runs, and shares nothing with the library but what is told here.
class BlockFileModel {
 public:
  static constexpr unsigned int kUnlimited = ~0U;

  /// Over `bytes`, standing at `base`. `endByPosition` as in MemoryFile. The file takes `room`
  /// bytes more and then fails, in the middle of a write where that is so.
  BlockFileModel(Bytes bytes, unsigned int base, bool endByPosition,
                 unsigned int room = kUnlimited);

  bool seekFromStart(unsigned int logical);
  bool seekFromEnd(unsigned int distance);
  bool flush();
  bool getSize(unsigned int& size);
  Bytes read(unsigned int count);
  unsigned int write(const Bytes& source);
  unsigned int offset() const;
  bool eof() const;
  bool canRead() const { return state.mode != 2; }

  BlockState state;
  Bytes disk;

 private:
  unsigned int myOffset() const { return m_place - state.baseOffset; }
  void fileSeek(unsigned int place);
  Bytes fileRead(unsigned int count);
  unsigned int fileWrite(const Bytes& bytes);

  void resetBuffer();
  void setCounter(unsigned int blockIndex);
  void loadBlock(bool seekBack);
  bool writeBlock();
  bool preSeek();

  unsigned int m_place;
  bool m_endMet = false;
  bool m_endByPosition;
  unsigned int m_room;
};

}  // namespace trelvo::test
