#pragma once

#include <algorithm>

#include <trelvo/core/IFile.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {

/// A file in memory that fails when it is told to.
class MemoryFile : public core::IFile {
 public:
  /// When eof() is true: from a read that met the end until a seek, as with core::File, or wherever
  /// the position is not ahead of the end.
  enum class End { MetByRead, ByPosition };
  enum class Call { Read, Write, Seek, Flush };
  static constexpr unsigned int kNever = ~0U;

  explicit MemoryFile(Bytes bytes = {}, End end = End::MetByRead)
      : content(std::move(bytes)), m_end(end) {}

  /// Has call number `at` of this kind fail, counted from 0 and from now, and all behind it too
  /// unless `once`. A read or write that fails moves nothing.
  void fail(Call call, unsigned int at, bool once) {
    m_failing = call;
    m_failAt = at;
    m_once = once;
    m_failed = false;
  }

  /// Whether that call has come.
  bool failed() const { return m_failed; }

  Bytes content;
  unsigned int position = 0;
  unsigned int writes = 0;  ///< Calls of write().
  bool isGood = true;
  bool readable = true;
  bool seekable = true;
  bool writable = true;

  bool good() const override { return isGood; }
  bool seekFromStart(unsigned int place) override {
    if (!goes(Call::Seek)) {
      return false;
    }
    position = place;
    m_endMet = false;
    return true;
  }
  bool seekFromEnd(unsigned int distance) override {
    return distance <= size() && seekFromStart(size() - distance);
  }
  unsigned int offset() const override { return position; }
  bool eof() const override { return m_end == End::ByPosition ? position >= size() : m_endMet; }
  bool getSize(unsigned int& result) override {
    result = size();
    m_endMet = false;
    return true;
  }
  bool canRead() const override { return readable; }
  bool canSeek() const override { return seekable; }
  bool canWrite() const override { return writable; }

  unsigned int read(unsigned char* target, unsigned int count) override {
    if (!goes(Call::Read)) {
      return 0;
    }
    const unsigned int there = position < size() ? size() - position : 0;
    const unsigned int given = std::min(count, there);
    std::copy_n(content.data() + (given != 0 ? position : 0), given, target);
    position += given;
    m_endMet = m_endMet || given < count;
    return given;
  }

  unsigned int write(const unsigned char* source, unsigned int count) override {
    ++writes;
    if (!goes(Call::Write)) {
      return 0;
    }
    content.resize(std::max<std::size_t>(content.size(), position + std::size_t{count}));
    std::copy_n(source, count, content.begin() + static_cast<std::ptrdiff_t>(position));
    position += count;
    return count;
  }

  bool flush() override { return goes(Call::Flush); }

 private:
  unsigned int size() const { return static_cast<unsigned int>(content.size()); }

  bool goes(Call call) {
    if (call != m_failing || m_failAt == kNever) {
      return true;
    }
    if (m_failAt != 0) {
      --m_failAt;
      return true;
    }
    m_failed = true;
    m_failAt = m_once ? kNever : 0;
    return false;
  }

  End m_end;
  bool m_endMet = false;
  Call m_failing = Call::Read;
  unsigned int m_failAt = kNever;
  bool m_once = true;
  bool m_failed = false;
};

}  // namespace trelvo::test
