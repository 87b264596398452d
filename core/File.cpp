#include <trelvo/core/File.h>

#include <sys/types.h>

#include <cstdio>

#include "core/StreamFile.h"

namespace trelvo::core {

namespace {

constexpr off_t kNoPosition = -1;
constexpr off_t kLargestPosition = 0xFFFFFFFF;

off_t positionOf(FILE* stream) { return stream == nullptr ? kNoPosition : ftello(stream); }

// Whether offset() gave all ones for want of a position and not for the largest one.
bool isNone(FILE* stream, unsigned int offset, off_t position) {
  return stream != nullptr && offset == kLargestPosition && position != kLargestPosition;
}

// Offsets are signed and wide before they are negated: `long` may have more bits than an unsigned
// int, or too few for one.
bool seek(FILE* stream, off_t offset, int origin) {
  return stream != nullptr && fseeko(stream, offset, origin) == 0;
}

}  // namespace

IFile::~IFile() = default;

File::File(FILE* stream, unsigned int flags) noexcept : m_stream(stream), m_flags(flags) {}

File::~File() { const Stream closing(m_stream); }

bool File::good() const { return m_stream != nullptr && std::ferror(m_stream) == 0; }

bool File::moved(bool done) noexcept {
  m_last = done ? Move::None : m_last;
  return done;
}

bool File::seekFromStart(unsigned int position) {
  return moved(seek(m_stream, static_cast<off_t>(position), SEEK_SET));
}

bool File::seekFromEnd(unsigned int distance) {
  return moved(seek(m_stream, -static_cast<off_t>(distance), SEEK_END));
}

unsigned int File::offset() const { return static_cast<unsigned int>(positionOf(m_stream)); }

bool File::eof() const { return m_stream == nullptr || std::feof(m_stream) != 0; }

bool File::getSize(unsigned int& size) {
  const off_t position = positionOf(m_stream);
  const unsigned int saved = offset();
  if (isNone(m_stream, saved, position) || !seekFromEnd(0)) {
    return false;
  }
  const off_t end = positionOf(m_stream);
  if (position > kLargestPosition || end > kLargestPosition) {
    static_cast<void>(moved(seek(m_stream, position, SEEK_SET)));
    return false;
  }
  const unsigned int measured = offset();
  const bool known = !isNone(m_stream, measured, end);
  size = known ? measured : size;
  static_cast<void>(seekFromStart(saved));
  return known;
}

bool File::canRead() const { return (m_flags & FlagReadable) != 0; }

bool File::canSeek() const { return (m_flags & FlagSeekable) != 0; }

bool File::canWrite() const { return (m_flags & FlagWritable) != 0; }

// A stream must not turn from one to the other without a flush or a seek: glibc loses bytes then.
bool File::turnToReading() {
  if (m_last == Move::Write && std::fflush(m_stream) != 0) {
    return false;
  }
  m_last = Move::Read;
  return true;
}

bool File::turnToWriting() {
  if (m_last == Move::Read && std::feof(m_stream) == 0 && !seek(m_stream, 0, SEEK_CUR)) {
    return false;
  }
  m_last = Move::Write;
  return true;
}

unsigned int File::read(unsigned char* target, unsigned int count) {
  if (m_stream == nullptr || count == 0 || !turnToReading()) {
    return 0;
  }
  return static_cast<unsigned int>(std::fread(target, 1, count, m_stream));
}

unsigned int File::write(const unsigned char* source, unsigned int count) {
  if (m_stream == nullptr || count == 0 || !turnToWriting()) {
    return 0;
  }
  return static_cast<unsigned int>(std::fwrite(source, 1, count, m_stream));
}

bool File::flush() { return m_stream != nullptr && std::fflush(m_stream) == 0; }

gom::SharedPointer<IFile> openCrtFile(const std::string& path, const char* mode,
                                      unsigned int bufferSize, bool readOnly) {
  return fileOver(Stream(std::fopen(path.c_str(), mode)), bufferSize, readOnly);
}

}  // namespace trelvo::core
