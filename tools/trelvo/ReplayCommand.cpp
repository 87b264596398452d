#include "tools/trelvo/ReplayCommand.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include "tools/trelvo/ContainerInput.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/Interrupt.h"
#include "tools/trelvo/Replay.h"

namespace trelvo::tool {
namespace {

constexpr const char* kExamples =
    "From one container to the next it waits as long as their latest time stamps lie apart, in\n"
    "whole seconds as the containers have them. A container without a time stamp, or with one\n"
    "before the last, comes at once. Ctrl-C ends it behind a whole container.\n\n"
    "Examples:\n"
    "  trelvo import nmea/bt451.log -o drive.trelvo\n"
    "  trelvo replay drive.trelvo --speed 100 --longest-gap 60 | trelvo show --ndjson -\n"
    "  trelvo replay drive.trelvo --speed max | trelvo show -";

struct ReplayOptions {
  std::string file;
  std::string speed = "1";
  std::string longestGap;
  StoreOptions store;
};

// Empty for what is no number from 0 up.
std::optional<double> parsed(const std::string& text) {
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  const bool isNumber = result.ec == std::errc() && result.ptr == end;
  return isNumber && std::isfinite(value) && value >= 0.0 ? std::optional<double>(value)
                                                          : std::nullopt;
}

std::string checkNumber(const std::string& text) {
  return parsed(text) ? std::string() : text + " is no number from 0 up";
}

std::string checkSpeed(const std::string& text) {
  return text == "max" || parsed(text) ? std::string()
                                       : text + " is neither a number from 0 up nor max";
}

/// The machine's own clock.
///
/// Signals that ask the program to end are held back. Where reading may wait for its input, that is
/// only from the wait for a container until it is written, and while the next one is read they end
/// the program as always.
class SteadyReplayClock : public ReplayClock {
 public:
  explicit SteadyReplayClock(bool mayReadingWait) : m_mayReadingWait(mayReadingWait) {
    if (!mayReadingWait) {
      m_interrupt.emplace();
    }
  }

  bool waitUntil(ReplayPace::Time due) override {
    if (!m_interrupt) {
      m_interrupt.emplace();
    }
    ReplayPace::Time left = due - elapsed();
    while (!isAsked(left) && left.count() > 0.0) {
      left = due - elapsed();
    }
    return !m_isAsked;
  }

  bool isEnded() override {
    const bool isAskedNow = isAsked(ReplayPace::Time(0.0));
    if (m_mayReadingWait) {
      m_interrupt.reset();
    }
    return isAskedNow;
  }

 private:
  using Clock = std::chrono::steady_clock;

  ReplayPace::Time elapsed() const { return Clock::now() - m_start; }

  bool isAsked(ReplayPace::Time wait) {
    constexpr double kLongestWait = 3.6e6;  // milliseconds; the caller goes on waiting
    const double milliseconds = std::ceil(std::clamp(wait.count() * 1e3, 0.0, kLongestWait));
    pollfd waited = {m_interrupt->descriptor(), POLLIN, 0};
    m_isAsked = ::poll(&waited, 1, static_cast<int>(milliseconds)) > 0;
    return m_isAsked;
  }

  bool m_mayReadingWait;
  Clock::time_point m_start = Clock::now();
  std::optional<Interrupt> m_interrupt;
  bool m_isAsked = false;
};

int runReplay(const ReplayOptions& options, CommandContext& context) {
  return reporting(context, [&] {
    ContainerInput input(options.file, options.store, context, false);
    RawContainers containers(input);
    const ReplayPace pace(parsed(options.speed).value_or(0.0), parsed(options.longestGap));
    context.out.flush();
    DescriptorStream output(context.outputDescriptor);
    SteadyReplayClock clock(!input.stream().canSeek());
    replay(containers, pace, clock, output, "standard output");
  });
}

}  // namespace

void addReplayCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<ReplayOptions>();
  CLI::App* command = app.add_subcommand(
      "replay", "Hand containers to standard output in the rhythm of their time stamps");
  addContainerFile(*command, options->file);
  command
      ->add_option("--speed", options->speed,
                   "How many times faster than measured, 1 by default; 0 and max wait for nothing")
      ->check(checkSpeed);
  command
      ->add_option("--longest-gap", options->longestGap,
                   "Seconds of the time stamps that a gap counts at most; without it any")
      ->check(checkNumber);
  addSealedOptions(*command, options->store);
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = runReplay(*options, context); });
}

}  // namespace trelvo::tool
