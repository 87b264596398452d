#include "tools/trelvo/DiffCommand.h"

#include <cmath>
#include <exception>
#include <memory>
#include <string>

#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/DiffWalk.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "Compares what the fields mean, as trelvo show prints them, in whatever order they stand.\n"
    "Containers are paired in their order; where one is missing or new, it looks up to 32 ahead\n"
    "for the next that both files have.\n\n"
    "Exit status: 0 the files are equal, 1 they differ, 2 trouble.\n\n"
    "Examples:\n"
    "  trelvo import geosubmit/geosubmit2.json -o a.trelvo\n"
    "  trelvo export a.trelvo --format geosubmit | trelvo import - -o b.trelvo\n"
    "  trelvo diff a.trelvo b.trelvo\n"
    "  trelvo diff --tolerance 0.5 a.trelvo b.trelvo";

constexpr int kExitEqual = 0;
constexpr int kExitDifferent = 1;
constexpr int kExitTrouble = 2;

struct DiffOptions {
  std::string left;
  std::string right;
  double tolerance = 0.0;
  StoreOptions store;
};

/// Prints what a comparison finds.
class DiffPrinter : public DiffListener {
 public:
  explicit DiffPrinter(std::ostream& out) : m_out(out) {}

  void different(const RawContainer& left, const RawContainer& right,
                 const std::vector<FieldDifference>& fields) override {
    m_out << "container " << left.number << " of A (" << placeText(left) << ") and " << right.number
          << " of B (" << placeText(right) << "):\n";
    for (const FieldDifference& field : fields) {
      m_out << "  " << (field.path.empty() ? "kind" : field.path) << ": " << sideText(field.left)
            << " | " << sideText(field.right) << (field.note.empty() ? "" : ", ") << field.note
            << '\n';
    }
  }

  void onlyLeft(const RawContainer& container) override { only(container, "A"); }
  void onlyRight(const RawContainer& container) override { only(container, "B"); }

 private:
  void only(const RawContainer& container, const char* side) {
    m_out << "container " << container.number << " of " << side << " (" << placeText(container)
          << "): only there\n";
  }

  static std::string placeText(const RawContainer& container) {
    return "byte " + std::to_string(container.offset) +
           (container.timeStamp ? ", " + timeValue(*container.timeStamp).note : "");
  }

  static std::string sideText(const std::string& text) { return text.empty() ? "none" : text; }

  std::ostream& m_out;
};

class Diff {
 public:
  Diff(const DiffOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() {
    if (m_options.left == kStandard && m_options.right == kStandard) {
      throw CLI::ValidationError("B", "standard input can be read only once");
    }
    try {
      DiffCounts counts;
      const int status = reporting(m_context, [&] { counts = compare(); });
      return status != kExitGood ? kExitTrouble : counts.isEqual() ? kExitEqual : kExitDifferent;
    } catch (const std::exception& error) {
      m_context.err << "trelvo: " << error.what() << std::endl;
      return kExitTrouble;
    }
  }

 private:
  DiffCounts compare() {
    ContainerInput left(m_options.left, m_options.store, m_context, false);
    ContainerInput right(m_options.right, m_options.store, m_context, false);
    RawContainers leftContainers(left);
    RawContainers rightContainers(right);
    const FieldComparison comparison(m_options.tolerance);
    DiffPrinter printer(m_context.out);
    const DiffCounts counts = DiffWalk(leftContainers, rightContainers, comparison, printer).run();
    if (!counts.isEqual()) {
      m_context.out << counts.equal << " equal, " << counts.different << " different, "
                    << counts.onlyLeft << " only in A, " << counts.onlyRight << " only in B\n";
    }
    m_context.out.flush();
    return counts;
  }

  const DiffOptions& m_options;
  CommandContext& m_context;
};

}  // namespace

void addDiffCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<DiffOptions>();
  CLI::App* command =
      app.add_subcommand("diff", "Tell which containers and fields of two files differ");
  command->add_option("A", options->left, "File in the wire format; - is standard input")
      ->required();
  command->add_option("B", options->right, "The other file; - is standard input")->required();
  command
      ->add_option("--tolerance", options->tolerance,
                   "Metres, 0 by default, up to which positions, and altitudes, are equal")
      ->check(CLI::NonNegativeNumber);
  addSealedOptions(*command, options->store,
                   "Both files are sealed with the key of the store NAME: see trelvo unseal");
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Diff(*options, context).run(); });
}

}  // namespace trelvo::tool
