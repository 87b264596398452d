#include "tools/trelvo/SealCommand.h"

#include <memory>
#include <string>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/OutputFile.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/SealedStore.h"
#include "tools/trelvo/SealedStream.h"

namespace trelvo::tool {

namespace {

constexpr const char* kSealHelp =
    "NAME picks the key, which is made on this device from a seed in the storage directory and "
    "the\n"
    "identity in the environment variable ORVE_UNIQUE_DEVICE_ID. Give every file a name of its "
    "own:\n"
    "two files under one key give away how they differ. OUT is for its owner only when it is "
    "new.\n\n"
    "Examples:\n"
    "  trelvo seal --storage keys drive-0904 drive.trelvo drive.sealed\n"
    "  xz -dc drive.xz | trelvo seal --storage keys drive-0904 - drive.sealed";

constexpr const char* kUnsealHelp =
    "A sealed file has no checksum: with the key of another name, storage directory or device "
    "what\n"
    "comes out is noise, and only its content tells. trelvo show --sealed looks.\n\n"
    "Examples:\n"
    "  trelvo unseal --storage keys drive-0904 drive.sealed drive.trelvo\n"
    "  trelvo unseal --storage keys drive-0904 drive.sealed - | trelvo show -";

struct SealOptions {
  StoreOptions store;
  std::string input;
  std::string output;
};

class Sealing {
 public:
  Sealing(const SealOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  void seal() {
    const Store store = openStoreForSealing(m_options.store);
    DescriptorStream input = openInput(m_options.input, m_context);
    if (input.size().value_or(0) > kLargestSealed) {
      throw Failure(m_options.input + ": larger than the 4 GiB that can be sealed; split it");
    }
    OutputFile file(m_options.output, kModePrivate);
    {
      DescriptorStream output(file.descriptor());
      SealedStream sealed(output, m_options.output, *store);
      copy(input, sealed, m_options.output);
    }
    file.commit();
  }

  void unseal() {
    const Store store = openStoreForUnsealing(m_options.store);
    DescriptorStream input = openInput(m_options.input, m_context);
    SealedStream sealed(input, inputName(m_options.input), *store);
    if (m_options.output == kStandard) {
      return copyTo(m_context.outputDescriptor, sealed, "standard output");
    }
    OutputFile file(m_options.output);
    copyTo(file.descriptor(), sealed, m_options.output);
    file.commit();
  }

 private:
  void copyTo(int descriptor, FileStream& input, const std::string& name) {
    m_context.out.flush();
    DescriptorStream output(descriptor);
    copy(input, output, name);
  }

  void copy(FileStream& input, FileStream& output, const std::string& name) {
    Progress progress(m_context.err, m_context.errorIsTerminal, input.size());
    input.onBlock([&progress](std::uint64_t bytes) { progress.update(bytes); });
    copyAll(input, inputName(m_options.input), output, name);
    input.onBlock(nullptr);
  }

  const SealOptions& m_options;
  CommandContext& m_context;
};

using Run = void (Sealing::*)();

CLI::App* addCommand(CLI::App& app, const char* name, const char* description,
                     CommandContext& context, const std::shared_ptr<SealOptions>& options,
                     Run run) {
  CLI::App* command = app.add_subcommand(name, description);
  command->add_option("NAME", options->store.name, "The store whose key it is")
      ->required()
      ->check(checkNotEmpty);
  command->callback([options, &context, run] {
    context.exitStatus = reporting(context, [&] { (Sealing(*options, context).*run)(); });
  });
  addStorageOption(*command, options->store);
  return command;
}

std::string checkSought(const std::string& name) {
  return name == kStandard ? "a sealed file has to be a file that can be sought, not -"
                           : std::string();
}

}  // namespace

void addSealCommands(CLI::App& app, CommandContext& context) {
  const auto sealing = std::make_shared<SealOptions>();
  CLI::App* seal = addCommand(app, "seal", "Encrypt a file with a key that belongs to this device",
                              context, sealing, &Sealing::seal);
  seal->add_option("IN", sealing->input, "File to seal; - is standard input")->required();
  seal->add_option("OUT", sealing->output, "Sealed file to write")->required()->check(checkSought);
  seal->footer(kSealHelp);

  const auto unsealing = std::make_shared<SealOptions>();
  CLI::App* unseal = addCommand(app, "unseal", "Decrypt a file that trelvo seal wrote", context,
                                unsealing, &Sealing::unseal);
  unseal->add_option("IN", unsealing->input, "Sealed file")->required()->check(checkSought);
  unseal->add_option("OUT", unsealing->output, "File to write; - is standard output")->required();
  unseal->footer(kUnsealHelp);
}

}  // namespace trelvo::tool
