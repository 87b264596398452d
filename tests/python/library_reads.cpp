// Reads files by the library and prints, a line each, where each object ends and how the reading
// did:
//
//   library_reads FILE...
//   48 100 end          two objects, the file ends behind the second one
//   48 refused          one object, then bytes that are none
//   threw               a class id that no class has

#include <trelvo/BufferStream.h>
#include <trelvo/gom/GenericObject.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

bool load(const char* path, trelvo::BufferStream& stream) {
  std::ifstream file(path, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  const auto size = static_cast<unsigned int>(content.size());
  return file && stream.write(reinterpret_cast<const unsigned char*>(content.data()), size) == size;
}

const char* read(trelvo::BufferStream& stream) {
  try {
    while (stream.offset() < stream.buffer().size()) {
      const auto object = trelvo::gom::GenericObject::create(stream);
      // Zeroes are objects of key 0 without an end; what reads files takes them for damage.
      if (!object || object->key() == 0) return "refused";
      std::printf("%u ", stream.offset());
    }
    return "end";
  } catch (trelvo::Status) {
    return "threw";
  }
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    trelvo::BufferStream stream;
    if (!load(argv[i], stream)) {
      std::fprintf(stderr, "library_reads: %s cannot be read\n", argv[i]);
      return 1;
    }
    std::puts(read(stream));
  }
}
