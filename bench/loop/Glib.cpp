// GLib: idle sources, calls handed over with g_main_context_invoke_full(), timeout sources.

#include <glib.h>

#include "bench/Must.h"
#include "bench/loop/PostBench.h"
#include "bench/loop/TimerBench.h"

namespace bench {

namespace {

struct Posted {
  Call call;
  void* data;

  static gboolean run(gpointer posted) {
    const auto& self = *static_cast<const Posted*>(posted);
    self.call(self.data);
    return G_SOURCE_REMOVE;
  }
  static void destroy(gpointer posted) { delete static_cast<Posted*>(posted); }
};

/// A context of its own, held by the thread that made it.
class Context {
 public:
  Context() : m_context(g_main_context_new()) {
    must(g_main_context_acquire(m_context) != FALSE, "g_main_context_acquire");
  }
  ~Context() {
    g_main_context_release(m_context);
    g_main_context_unref(m_context);
  }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  void turn() { g_main_context_iteration(m_context, TRUE); }
  GMainContext* get() { return m_context; }

 private:
  GMainContext* m_context;
};

class IdleLoop : public Context {
 public:
  void post(Call call, void* data) {
    GSource* const source = g_idle_source_new();
    g_source_set_callback(source, Posted::run, new Posted{call, data}, Posted::destroy);
    g_source_attach(source, get());
    g_source_unref(source);
  }
};

/// On the loop's own thread that would run the call at once, hence only for other threads.
class InvokeLoop : public Context {
 public:
  void post(Call call, void* data) {
    g_main_context_invoke_full(get(), G_PRIORITY_DEFAULT, Posted::run, new Posted{call, data},
                               Posted::destroy);
  }
};

/// GLib has no timer that is kept: to arm one is to make a source.
class TimeoutSource {
 public:
  TimeoutSource(Context& loop, Call call, void* data) : m_loop(loop), m_posted{call, data} {}
  ~TimeoutSource() { disarm(); }
  TimeoutSource(const TimeoutSource&) = delete;
  TimeoutSource& operator=(const TimeoutSource&) = delete;

  void arm(int ms) {
    disarm();
    m_source = g_timeout_source_new(static_cast<guint>(ms));
    g_source_set_callback(m_source, Posted::run, &m_posted, nullptr);
    g_source_attach(m_source, m_loop.get());
  }
  void disarm() {
    if (m_source != nullptr) {
      g_source_destroy(m_source);
      g_source_unref(m_source);
      m_source = nullptr;
    }
  }

 private:
  Context& m_loop;
  Posted m_posted;
  GSource* m_source = nullptr;
};

const bool kRegistered = registerLoop<IdleLoop>("GLib_idle") &&
                         registerPosters<InvokeLoop>("GLib_invoke") &&
                         registerArming<Context, TimeoutSource>("GLib");

}  // namespace

}  // namespace bench
