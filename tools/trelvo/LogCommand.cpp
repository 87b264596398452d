#include "tools/trelvo/LogCommand.h"

#include <memory>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/LogDecrypt.h"
#include "tools/trelvo/LogWrite.h"

namespace trelvo::tool {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  openssl genrsa -aes256 -out priv.pem 2048\n"
    "  openssl rsa -in priv.pem -pubout -out pub.pem\n"
    "  daemon 2>&1 | trelvo log write --key pub.pem daemon.slog\n"
    "  trelvo log decrypt --key priv.pem daemon.slog daemon.log";

constexpr const char* kWriteHelp =
    "Whoever has the private key that belongs to PUB.pem can read the log, and nobody else; "
    "nothing\n"
    "of the text stands in the file as it is. What was flushed can be read even when the program\n"
    "dies. A new log is for its owner only; one that is there is emptied.\n\n"
    "Examples:\n"
    "  daemon 2>&1 | trelvo log write --key pub.pem daemon.slog\n"
    "  daemon 2>&1 | trelvo log write --key pub.pem --flush 1 daemon.slog";

constexpr const char* kDecryptHelp =
    "The pass phrase of a protected key is asked for at the terminal, unless an option tells "
    "where\n"
    "it is; it is never an argument, which others could see. A log whose writer died comes out up "
    "to\n"
    "its last flush; of a damaged one comes out what stands ahead of the damage.\n\n"
    "Examples:\n"
    "  trelvo log decrypt --key priv.pem daemon.slog daemon.log\n"
    "  trelvo log decrypt --key priv.pem --passphrase-file secret daemon.slog - | grep warning\n"
    "  trelvo log decrypt --key priv.pem --passphrase-env LOG_PHRASE daemon.slog -";

std::string checkFile(const std::string& name) {
  return name == kStandard ? "an encrypted log has to be a file that can be sought, not -"
                           : std::string();
}

void addWrite(CLI::App& log, CommandContext& context) {
  const auto options = std::make_shared<LogWriteOptions>();
  CLI::App* command =
      log.add_subcommand("write", "Write the lines of standard input to an encrypted log");
  command->add_option("--key", options->key, "Public RSA key, PEM")
      ->required()
      ->type_name("PUB.pem");
  command
      ->add_option("--flush", options->flushEvery,
                   "Lines from one flush to the next; 0 flushes at the end only")
      ->type_name("N")
      ->capture_default_str();
  command->add_option("OUT.slog", options->log, "Log to write")->required()->check(checkFile);
  command->footer(kWriteHelp);
  command->callback([options, &context] {
    context.exitStatus = reporting(context, [&] { writeLog(*options, context); });
  });
}

void addDecrypt(CLI::App& log, CommandContext& context) {
  const auto options = std::make_shared<LogDecryptOptions>();
  CLI::App* command = log.add_subcommand("decrypt", "Turn an encrypted log into its text");
  command->add_option("--key", options->key, "Private RSA key, PEM")
      ->required()
      ->type_name("PRIV.pem");
  addPassphraseOptions(*command, options->passphrase);
  command->add_option("IN.slog", options->log, "Encrypted log")->required()->check(checkFile);
  command->add_option("OUT", options->output, "File to write; - is standard output")->required();
  command->footer(kDecryptHelp);
  command->callback([options, &context] {
    context.exitStatus = reporting(context, [&] { decryptLog(*options, context); });
  });
}

}  // namespace

void addLogCommand(CLI::App& app, CommandContext& context) {
  CLI::App* log = app.add_subcommand(
      "log", "Write logs that only the holder of a private key can read, and read them");
  log->require_subcommand(1);
  log->footer(kExamples);
  addWrite(*log, context);
  addDecrypt(*log, context);
}

}  // namespace trelvo::tool
