#include "tools/trelvo/ContainerInput.h"

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

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

Store openStoreIfNamed(const StoreOptions& options) {
  return options.name.empty() ? Store() : openStoreForUnsealing(options);
}

}  // namespace

void addContainerFile(CLI::App& command, std::string& file) {
  command.add_option("FILE", file, "File in the wire format; - is standard input")->required();
}

ContainerInput::ContainerInput(const std::string& file, const StoreOptions& store,
                               const CommandContext& context, bool mayShowProgress)
    : m_name(inputName(file)),
      m_store(openStoreIfNamed(store)),
      m_file(openInput(file, context)),
      m_progress(context.err, mayShowProgress && context.errorIsTerminal, m_file.size()) {
  if (m_store) {
    unseal(store);
  }
  stream().onBlock([this](std::uint64_t bytes) { m_progress.update(bytes); });
}

void ContainerInput::unseal(const StoreOptions& options) {
  m_sealed.emplace(m_file, m_name, *m_store);
  const bool isSound = looksLikeObjects(*m_sealed);
  checkRead(*m_sealed, m_name);
  if (!isSound) {
    fail("holds no objects under the key of store " + options.name +
         "; check the name, --storage and ORVE_UNIQUE_DEVICE_ID");
  }
}

void ContainerInput::fail(const std::string& reason) const {
  throw Failure(m_name + ": " + reason);
}

}  // namespace trelvo::tool
