#include "tools/trelvo/ShowCommand.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/SealedStore.h"
#include "tools/trelvo/SealedStream.h"
#include "tools/trelvo/ShowObjects.h"
#include "tools/trelvo/ShowRaw.h"
#include "tools/trelvo/ShowWriter.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  trelvo show drive.trelvo             a readable tree\n"
    "  trelvo show --ndjson drive.trelvo | grep WlanMeasurement\n"
    "  trelvo show --raw - < unknown.bin    offsets, tags and bytes\n"
    "  trelvo show --sealed drive-0904 --storage keys drive.sealed";

struct ShowOptions {
  std::string file;
  bool json = false;
  bool jsonLines = false;
  bool raw = false;
  StoreOptions store;
};

/// Looks at the first value of the first object only, and whether it can be one.
class FirstValue : public WireHandler {
 public:
  /// `size` is the input's.
  explicit FirstValue(std::uint64_t size) : m_size(size) {}

  void beginObject(const WireItem&, unsigned short, unsigned int count) override {
    constexpr std::uint64_t kSmallest = 4;  // a value's tag and key
    see(count <= m_size / kSmallest);
  }
  void endObject() override {}
  void beginCollection(const WireItem&, unsigned int) override { see(true); }
  void endCollection() override {}
  void scalar(const WireItem& item, std::uint64_t) override { see(item.tag <= TagCollection); }
  void string(const WireItem&, const std::string&) override { see(true); }
  void record(const WireItem&, const gom::ObjectBase&) override { see(true); }
  bool stopped() const override { return m_items > 1 || !m_isSound; }

  bool isSound() const { return m_isSound; }

 private:
  void see(bool isSound) {
    ++m_items;
    m_isSound = m_isSound && isSound;
  }

  std::uint64_t m_size;
  unsigned int m_items = 0;  // the outermost object included
  bool m_isSound = true;
};

// A wrong key gives noise, which announces billions of properties of types that are none.
bool looksLikeObjects(FileStream& input) {
  FirstValue handler(input.size().value_or(0));
  WireParser parser(input, 0, handler);
  const bool isRead = input.eof() || parser.parseObject() || handler.stopped();
  return input.seekFromStart(0) && isRead && handler.isSound();
}

class Show {
 public:
  Show(const ShowOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() {
    return reporting(m_context, [this] {
      const Store store = isSealed() ? openStoreForUnsealing(m_options.store) : Store();
      DescriptorStream input = openInput(m_options.file, m_context);
      if (!store) {
        return showStream(input);
      }
      SealedStream sealed(input, inputName(m_options.file), *store);
      checkKey(sealed);
      showStream(sealed);
    });
  }

 private:
  bool isSealed() const { return !m_options.store.name.empty(); }

  void checkKey(FileStream& sealed) {
    const bool isSound = looksLikeObjects(sealed);
    checkRead(sealed, inputName(m_options.file));
    if (!isSound) {
      fail("holds no objects under the key of store " + m_options.store.name +
           "; check the name, --storage and ORVE_UNIQUE_DEVICE_ID");
    }
  }

  void showStream(FileStream& input) {
    const std::string problem = m_options.raw ? showRaw(input) : showDecoded(input);
    m_context.out.flush();
    if (!problem.empty()) {
      fail(problem);
    }
  }

  std::string showRaw(FileStream& input) {
    ShowRaw handler(m_context.out);
    return showObjects(input, handler);
  }

  std::string showDecoded(FileStream& input) {
    const std::unique_ptr<ShowWriter> writer = makeWriter();
    ShowObjects handler(*writer, m_context.out);
    std::string problem = showObjects(input, handler);
    writer->finish();
    return problem;
  }

  std::unique_ptr<ShowWriter> makeWriter() {
    return m_options.json        ? makeJsonWriter(m_context.out)
           : m_options.jsonLines ? makeJsonLinesWriter(m_context.out)
                                 : makeTreeWriter(m_context.out);
  }

  // Gives what went wrong, empty when nothing did.
  std::string showObjects(FileStream& input, WireHandler& handler) {
    // On one terminal the bar and the objects would overwrite each other.
    Progress progress(m_context.err, m_context.errorIsTerminal && !m_context.outputIsTerminal,
                      input.size());
    input.onBlock([&progress](std::uint64_t bytes) { progress.update(bytes); });
    WireParser parser(input, input.position(), handler);
    bool whole = true;
    while (whole && !handler.stopped() && !input.eof()) {
      whole = parser.parseObject();
    }
    input.onBlock(nullptr);
    return input.error() != 0 ? std::strerror(input.error()) : faultText(parser.fault());
  }

  static std::string faultText(const WireFault& fault) {
    return fault.reason.empty()
               ? ""
               : "stops at byte " + std::to_string(fault.offset) + ": " + fault.reason;
  }

  [[noreturn]] void fail(const std::string& reason) const {
    throw Failure(inputName(m_options.file) + ": " + reason);
  }

  const ShowOptions& m_options;
  CommandContext& m_context;
};

}  // namespace

void addShowCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* command = app.add_subcommand("show", "Print measurement containers and injections");
  command->add_option("FILE", options->file, "File in the wire format; - is standard input")
      ->required();
  auto* json = command->add_flag("--json", options->json, "One JSON array with all objects");
  auto* lines = command->add_flag("--ndjson", options->jsonLines, "One JSON object a line");
  auto* raw = command->add_flag("--raw", options->raw,
                                "Offsets, bytes, tags and keys of any generic objects");
  json->excludes(lines)->excludes(raw);
  lines->excludes(raw);
  addSealedOptions(*command, options->store,
                   "FILE is sealed with the key of the store NAME: see trelvo unseal");
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Show(*options, context).run(); });
}

}  // namespace trelvo::tool
