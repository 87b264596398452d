#include "tests/soak/Soak.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace soak {

Figures gFigures;

void check(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "soak: FAILED: %s\n", what);
    std::_Exit(EXIT_FAILURE);
  }
}

void Worker::start() {
  m_thread = trelvo::core::IThread::create(this, false);
  check(static_cast<bool>(m_thread), "a thread starts");
}

void Worker::join() { check(m_thread->wait(), "a thread ends"); }

int Worker::threadMain() {
  begin();
  while (m_goingOn) {
    round();
  }
  end();
  return 0;
}

std::string Random::bytes(std::size_t count) {
  std::string result(count, '\0');
  for (char& byte : result) {
    byte = static_cast<char>(m_engine());
  }
  return result;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  check(file.is_open(), "a file that was written opens");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace soak
