// A program outside the project: one fix to bytes and back.

#include <cstdio>

#include <trelvo/trelvo.h>

int main() {
  trelvo_core_init();
  using trelvo::schema::PositionEstimate;
  const auto fix = PositionEstimate::create(48.8583, 2.2945, 12.5, 1700000000);
  trelvo::BufferStream stream;
  if (!fix || !fix->write(stream)) {
    return 1;
  }
  const trelvo::Buffer& bytes = stream.buffer();
  for (unsigned int i = 0; i < bytes.size(); ++i) {
    std::printf("%02X", bytes.ReadOnlyBuffer::data()[i]);
  }
  const auto back = PositionEstimate::create();
  if (!back || !back->read(stream) || !(*back == *fix)) {
    return 1;
  }
  std::printf("\n%.4f %.4f\n", back->latitude(), back->longitude());
  trelvo_core_fini();
  return 0;
}
