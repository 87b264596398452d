// The limit of the machine: the wire form's bytes copied once.

#include <cstring>
#include <memory>

#include "bench/WireBench.h"
#include "bench/peers/WireForm.h"

namespace bench {

namespace {

template <class Sample>
class MemcpyCodec {
 public:
  explicit MemcpyCodec(const Sample& sample)
      : m_digest(digestOf(sample)),
        m_size(wireForm(sample).size()),
        m_from(new unsigned char[m_size]()),
        m_to(new unsigned char[m_size]) {}

  std::size_t encode() { return write(); }
  std::size_t write() {
    std::memcpy(m_to.get(), m_from.get(), m_size);
    benchmark::ClobberMemory();
    return m_size;
  }
  void decode() { write(); }
  std::uint64_t decodeAndRead() {
    write();
    return m_digest;
  }

 private:
  std::uint64_t m_digest;
  std::size_t m_size;
  std::unique_ptr<unsigned char[]> m_from;
  std::unique_ptr<unsigned char[]> m_to;
};

const bool kRegistered = registerPeer<MemcpyCodec>("memcpy", Write | Decode);

}  // namespace

}  // namespace bench
