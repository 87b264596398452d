// Writes the man pages and the bash completion of the program from its command line.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "tools/manual/Completion.h"
#include "tools/manual/ManPage.h"
#include "tools/trelvo/App.h"
#include "tools/trelvo/CommandTree.h"

namespace {

namespace fs = std::filesystem;
using trelvo::manual::pageName;
using trelvo::manual::Sections;
using trelvo::manual::writeCommandPage;
using trelvo::manual::writeCompletion;
using trelvo::manual::writeProgramPage;
using trelvo::tool::CommandText;

constexpr const char* kSectionEnding = ".roff";

Sections readSections(const fs::path& folder) {
  Sections sections;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == kSectionEnding) {
      std::ostringstream text;
      text << std::ifstream(entry.path()).rdbuf();
      sections[entry.path().stem()] = text.str();
    }
  }
  return sections;
}

template <class Write>
void writeFile(const fs::path& path, const Write& write) {
  std::ofstream file(path);
  write(file);
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + path.string());
  }
}

CommandText program() {
  trelvo::tool::CommandContext context{std::cout, std::cerr};
  return trelvo::tool::describe(*trelvo::tool::makeApp(context));
}

void writeAll(const fs::path& sectionFolder, const fs::path& output) {
  const CommandText trelvo = program();
  const Sections sections = readSections(sectionFolder);
  fs::create_directories(output);
  writeFile(output / pageName(trelvo),
            [&](std::ostream& out) { writeProgramPage(out, trelvo, sections); });
  for (const CommandText& command : trelvo.commands) {
    writeFile(output / pageName(command),
              [&](std::ostream& out) { writeCommandPage(out, command, sections); });
  }
  writeFile(output / "trelvo.bash", [&](std::ostream& out) { writeCompletion(out, trelvo); });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: trelvo_manual SECTIONS OUTPUT\n";
    return 2;
  }
  try {
    writeAll(argv[1], argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "trelvo_manual: " << error.what() << "\n";
    return 1;
  }
}
