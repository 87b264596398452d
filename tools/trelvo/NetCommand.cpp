#include "tools/trelvo/NetCommand.h"

#include <poll.h>
#include <trelvo/IConnectionObserver.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/NetworkAdaptation.h>
#include <trelvo/network/IConnectionManager.h>

#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/trelvo/Event.h"
#include "tools/trelvo/Interrupt.h"
#include "tools/trelvo/MainLoopThread.h"
#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kExamples =
    "Needs the platform's connectivity service: NetworkManager on the system bus.\n\n"
    "Examples:\n"
    "  trelvo net\n"
    "  trelvo net --json\n"
    "  trelvo net --watch          until Ctrl-C";

struct NetOptions {
  bool json = false;
  bool watch = false;
};

std::string typeName(unsigned int type) {
  switch (type) {
    case ConnectionInfo::TypeNone:
      return "none";
    case ConnectionInfo::TypeWlan:
      return "wlan";
    case ConnectionInfo::TypeCellular:
      return "cellular";
    default:
      return std::to_string(type);
  }
}

std::string textOf(const ConnectionInfo& info) {
  const std::string start = std::string(info.name) + ": ";
  if (info.type == ConnectionInfo::TypeNone) {
    return start + "no connection";
  }
  const bool abroad = info.type == ConnectionInfo::TypeCellular && info.roaming;
  return start + typeName(info.type) + (info.connected ? ", connected" : ", not connected") +
         (abroad ? ", roaming" : "");
}

Json jsonOf(const ConnectionInfo& info) {
  return {{"name", info.name},
          {"type", typeName(info.type)},
          {"bearer", typeName(info.bearer)},
          {"connected", info.connected},
          {"roaming", info.roaming},
          {"id", info.id}};
}

std::string dump(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Prints a line for each connection that is there when it begins, and from then on one for each
/// event.
class EventPrinter : public IConnectionObserver {
 public:
  EventPrinter(const NetOptions& options, std::ostream& out) : m_json(options.json), m_out(out) {}

  void begin(const network::ConnectionInfoContainer& connections) {
    m_begun = true;
    for (const ConnectionInfo& info : connections) {
      print("present", info);
    }
  }

  /// Readable once nobody reads the output any more.
  int readerGone() const { return m_readerGone.descriptor(); }

  IPositioningExtension* extension(unsigned int) override { return nullptr; }
  void handleConnectionEstablished(const ConnectionInfo& info) override {
    print("established", info);
  }
  void handleConnectionDisconnected(const ConnectionInfo& info) override {
    print("disconnected", info);
  }
  void handleConnectionChanged(const ConnectionInfo& info) override { print("changed", info); }

 private:
  void print(const char* event, const ConnectionInfo& info) {
    if (!m_begun) {
      return;
    }
    const auto now = static_cast<unsigned int>(std::time(nullptr));
    const std::string utc = timeValue(now).note;
    if (m_json) {
      m_out << dump({{"time", {{"value", now}, {"utc", utc}}},
                     {"event", event},
                     {"connection", jsonOf(info)}});
    } else {
      m_out << utc << ' ' << event << ' ' << textOf(info);
    }
    m_out << std::endl;
    if (!m_out.good()) {
      m_readerGone.set();
    }
  }

  bool m_json;
  bool m_begun = false;
  std::ostream& m_out;
  Event m_readerGone;
};

class Net {
 public:
  Net(const NetOptions& options, CommandContext& context)
      : m_options(options), m_context(context) {}

  int run() { return m_options.watch ? watch() : show(); }

 private:
  using Manager = std::unique_ptr<network::IConnectionManager>;

  int show() {
    network::ConnectionInfoContainer connections;
    if (!ask(Manager(network::IConnectionManager::open()), connections)) {
      return kExitFailed;
    }
    if (m_options.json) {
      Json all = Json::array();
      for (const ConnectionInfo& info : connections) {
        all.push_back(jsonOf(info));
      }
      m_context.out << dump(all) << '\n';
    } else {
      for (const ConnectionInfo& info : connections) {
        m_context.out << textOf(info) << '\n';
      }
    }
    return kExitGood;
  }

  // Until the loop runs events come on this thread alone, by subscribing: so none is lost between
  // what is there at the start and the first of them.
  int watch() {
    const Interrupt interrupt;
    const std::unique_ptr<INetworkAdaptation> adaptation(NetworkAdaptation::create());
    const Manager manager(network::IConnectionManager::create(adaptation.get()));
    EventPrinter printer(m_options, m_context.out);
    network::ConnectionInfoContainer connections;
    if (manager && adaptation->subscribe(printer) != StatusOk) {
      return fail("cannot be followed; try again");
    }
    const bool asked = ask(manager, connections);
    if (asked) {
      printer.begin(connections);
      waitForTheEnd(interrupt, printer);
    }
    if (manager) {
      adaptation->unsubscribe(printer);
    }
    return asked ? kExitGood : kExitFailed;
  }

  static void waitForTheEnd(const Interrupt& interrupt, const EventPrinter& printer) {
    const MainLoopThread events;
    pollfd waited[] = {{interrupt.descriptor(), POLLIN, 0}, {printer.readerGone(), POLLIN, 0}};
    while (::poll(waited, 2, -1) < 0) {
    }
  }

  bool ask(const Manager& manager, network::ConnectionInfoContainer& connections) {
    if (!manager) {
      fail("cannot be asked; is there a system bus, and may you use it?");
      return false;
    }
    if (manager->getConnections(connections) != StatusOk) {
      fail("does not tell its connections; try again");
      return false;
    }
    return true;
  }

  int fail(const char* problem) {
    m_context.err << "trelvo: connectivity service: " << problem << std::endl;
    return kExitFailed;
  }

  const NetOptions& m_options;
  CommandContext& m_context;
};

}  // namespace

void addNetCommand(CLI::App& app, CommandContext& context) {
  auto options = std::make_shared<NetOptions>();
  CLI::App* command =
      app.add_subcommand("net", "Show the device's connection as the library sees it");
  command->add_flag("--json", options->json, "As JSON; with --watch one object a line");
  command->add_flag("--watch", options->watch, "Go on, and print each event as it comes");
  command->footer(kExamples);
  command->callback([options, &context] { context.exitStatus = Net(*options, context).run(); });
}

}  // namespace trelvo::tool
