#include "tools/trelvo/FetchCommand.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/FetchRequest.h"
#include "tools/trelvo/Interrupt.h"
#include "tools/trelvo/OutputFile.h"
#include "tools/trelvo/Progress.h"
#include "tools/trelvo/RemoteSize.h"
#include "tools/trelvo/ShowValue.h"
#include "tools/trelvo/TransferWatch.h"

namespace trelvo::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned int kNoDate = 0xFFFFFFFF;

constexpr const char* kExamples =
    "FILE gets its content when all of it has come and was found right; until then, and after a "
    "failure\n"
    "or Ctrl-C, what lay there stays. Without --allow any connection will do. Where the "
    "platform's\n"
    "connectivity service cannot be asked (no system bus, as in a container), there is one "
    "connection\n"
    "of unknown kind: downloads work, and --allow is refused.\n\n"
    "Examples:\n"
    "  trelvo fetch http://127.0.0.1:8000/drive.log -o drive.log --crc 37254fe5\n"
    "  trelvo fetch http://server/tile.aes -o tile --decrypt-key key.bin --decrypt-iv iv.bin\n"
    "  trelvo fetch http://server/tile -o tile.sealed --seal tiles --storage ~/.trelvo\n"
    "  trelvo fetch http://server/tile -o tile --allow wlan\n"
    "  trelvo fetch http://server/tile --check --json";

class Fetch {
 public:
  Fetch(const FetchOptions& options, CommandContext& context)
      : m_options(options), m_context(context), m_url(parsedAddress(options.address)) {}

  int run() {
    try {
      const std::optional<CipherKey> cipher =
          readCipher();  // Ctrl-C may be wanted while a pipe waits
      const Interrupt interrupt;
      FetchRequest request(m_options, m_url, cipher);
      return m_options.checkOnly ? check(request, interrupt) : download(request, interrupt);
    } catch (const Failure& error) {
      m_context.err << "trelvo: " << error.what() << std::endl;
      return kExitFailed;
    }
  }

 private:
  static HttpUrl parsedAddress(const std::string& address) {
    try {
      return parseHttpUrl(address);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError(address, error.what());
    }
  }

  std::optional<CipherKey> readCipher() const {
    if (!m_options.deciphers()) {
      return std::nullopt;
    }
    return CipherKey{readCipherBytes(m_options.keyFile), readCipherBytes(m_options.ivFile)};
  }

  int download(FetchRequest& request, const Interrupt& interrupt) {
    requireRegular();
    OutputFile file(m_options.output, m_options.seals() ? kModePrivate : kModeShared);
    unsigned long long bytes = 0;
    const Status status = transfer(request, interrupt, file, bytes);
    if (status != StatusOk) {
      return fail(explain(request.end(status)));
    }
    const std::uint64_t size = sizeOf(file);
    requireWhole(size, bytes);
    file.commit();
    m_context.err << "trelvo: wrote " << size << " bytes" << std::endl;
    return kExitGood;
  }

  // Others cannot be given their content in one step, nor be looked at afterwards.
  void requireRegular() const {
    std::error_code error;
    const auto type = std::filesystem::status(m_options.output, error).type();
    if (type != std::filesystem::file_type::regular &&
        type != std::filesystem::file_type::not_found) {
      throw Failure(m_options.output + ": is no regular file; name one, or a new one");
    }
  }

  Status transfer(FetchRequest& request, const Interrupt& interrupt, const OutputFile& file,
                  unsigned long long& bytes) {
    Progress progress(m_context.err, m_context.errorIsTerminal, std::nullopt);
    progress.showRate();
    const TransferWatch watch(
        interrupt, [&] { request->cancel(); }, ticker(progress, file));
    return request->download(m_url.path, file.currentPath(), bytes);
  }

  // The server is asked for the size when the bar is about to appear: a short download does
  // without.
  TransferWatch::Tick ticker(Progress& progress, const OutputFile& file) const {
    if (!m_context.errorIsTerminal) {
      return {};
    }
    return [this, &progress, &file, asked = false](const std::vector<int>& until) mutable {
      const std::uint64_t bytes = sizeOf(file);
      if (!asked && bytes > 0 && progress.isDue()) {
        asked = true;
        if (const auto total = askRemoteSize(m_url, until)) {
          progress.setTotal(*total);
        }
      }
      progress.update(bytes);
    };
  }

  static std::uint64_t sizeOf(const OutputFile& file) {
    struct stat status = {};
    ::fstat(file.descriptor(), &status);
    return static_cast<std::uint64_t>(status.st_size);
  }

  // The library does not see that a write failed. It counts what came over the network, which has
  // 1 to 16 bytes more than the file when it was enciphered.
  void requireWhole(std::uint64_t size, unsigned long long bytes) const {
    const auto missing = static_cast<std::uint32_t>(bytes - size);
    const bool whole = m_options.deciphers() ? missing >= 1 && missing <= 16 : missing == 0;
    if (!whole) {
      throw Failure(m_options.output + ": could not be written whole; is the disk full?");
    }
  }

  int check(FetchRequest& request, const Interrupt& interrupt) {
    unsigned int changed = kNoDate;
    Status status = StatusOk;
    {
      const TransferWatch watch(interrupt, [&] { request->cancel(); }, {});
      status = request->getRemoteFileModificationTime(m_url.path, changed);
    }
    const FetchEnd end = request.end(status);
    const bool isAnswer = status == StatusOk || status == StatusNotFound;
    if (isAnswer && m_options.json) {
      printJson(end, changed);
    } else if (status == StatusOk) {
      printText(changed);
    }
    return status == StatusOk ? kExitGood : fail(explain(end));
  }

  void printText(unsigned int changed) {
    const std::string date = changed == kNoDate ? "at an unknown time" : timeValue(changed).note;
    m_context.out << m_options.address << ": available, last changed " << date << std::endl;
  }

  void printJson(const FetchEnd& end, unsigned int changed) {
    const bool isDated = end.status == StatusOk && changed != kNoDate;
    Json result = {{"url", m_options.address}, {"available", end.status == StatusOk}};
    result["code"] = end.code;
    result["lastChanged"] =
        isDated ? Json{{"value", changed}, {"utc", timeValue(changed).note}} : Json(nullptr);
    m_context.out << result.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
  }

  int fail(const std::string& problem) {
    m_context.err << "trelvo: " << m_options.address << ": " << problem << std::endl;
    return kExitFailed;
  }

  const FetchOptions& m_options;
  CommandContext& m_context;
  HttpUrl m_url;
};

const std::map<std::string, unsigned int> kKinds = {{"wlan", ConnectionInfo::TypeWlan},
                                                    {"cellular", ConnectionInfo::TypeCellular}};

std::uint32_t crcOf(const std::string& text) {
  const std::size_t start = text.rfind("0x", 0) == 0 ? 2 : 0;
  std::uint32_t crc = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data() + start, end, crc, 16);
  if (text.size() - start > 8 || read.ec != std::errc() || read.ptr != end) {
    throw CLI::ValidationError("--crc", "no checksum of up to 8 hexadecimal digits: " + text);
  }
  if (crc == 0) {
    throw CLI::ValidationError("--crc", "0 stands for no checksum; leave it out");
  }
  return crc;
}

std::string checkOutput(const std::string& name) {
  return name == "-" ? "standard output cannot be downloaded into; name a file" : std::string();
}

void addDownloadOptions(CLI::App& command, const std::shared_ptr<FetchOptions>& options) {
  command
      .add_option_function<std::string>(
          "--crc", [options](const std::string& text) { options->crc = crcOf(text); },
          "CRC-32 (of zlib, gzip, PNG) that the content must have, in hexadecimal")
      ->type_name("HEX");
  auto* key = command.add_option("--decrypt-key", options->keyFile,
                                 "File with the key, 16 bytes or 32 hexadecimal digits, of a body "
                                 "enciphered by AES-128-CBC");
  auto* iv = command.add_option("--decrypt-iv", options->ivFile,
                                "File with its initialisation vector, in the same form");
  key->type_name("FILE")->check(checkNotEmpty)->needs(iv);
  iv->type_name("FILE")->check(checkNotEmpty)->needs(key);
  auto* seal = command.add_option("--seal", options->store.name,
                                  "Encrypt FILE with the key of the store NAME; each file wants a "
                                  "name of its own");
  seal->type_name("NAME")->check(checkNotEmpty);
  addStorageOption(command, options->store)->needs(seal);
}

void addAllow(CLI::App& command, const std::shared_ptr<FetchOptions>& options) {
  const auto allow = [options](const std::vector<unsigned int>& kinds) {
    for (const unsigned int kind : kinds) {
      options->allowed |= kind;
    }
  };
  command
      .add_option_function<std::vector<unsigned int>>(
          "--allow", allow, "Connections to use: wlan, cellular, or wlan,cellular; no roaming")
      ->delimiter(',')
      ->transform(CLI::CheckedTransformer(kKinds))
      ->option_text("KIND,...");
}

}  // namespace

void addFetchCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<FetchOptions>();
  CLI::App* command = app.add_subcommand("fetch", "Download a file over plain http");
  command->add_option("URL", options->address, "http://SERVER[:PORT]/PATH; https is not spoken")
      ->required();
  command->add_option("-o,--output", options->output, "File to write")
      ->type_name("FILE")
      ->check(checkOutput);
  addDownloadOptions(*command, options);
  addAllow(*command, options);
  auto* check = command->add_flag("--check", options->checkOnly,
                                  "Download nothing: tell whether the file is there, and its date");
  for (const char* other :
       {"--output", "--crc", "--decrypt-key", "--decrypt-iv", "--seal", "--storage"}) {
    check->excludes(other);
  }
  command->add_flag("--json", options->json, "The answer of --check as JSON")->needs(check);
  command->footer(kExamples);
  command->callback([options, &context] {
    if (!options->checkOnly && options->output.empty()) {
      throw CLI::RequiredError("-o");
    }
    context.exitStatus = Fetch(*options, context).run();
  });
}

}  // namespace trelvo::tool
