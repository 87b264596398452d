#pragma once

#include <memory>

#include <gio/gio.h>

namespace trelvo::network {

/// Gives a GLib or GIO object back when it goes: one function for each type of object.
struct GioDeleter {
  void operator()(GCancellable* object) const { g_object_unref(object); }
  void operator()(GDBusConnection* object) const { g_object_unref(object); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
  void operator()(GSource* source) const { g_source_unref(source); }
  void operator()(GVariant* value) const { g_variant_unref(value); }
  void operator()(GVariantIter* iterator) const { g_variant_iter_free(iterator); }
  void operator()(char* text) const { g_free(text); }
};

/// Owns one reference to a `T` of GLib or GIO.
template <class T>
using GioPointer = std::unique_ptr<T, GioDeleter>;

/// Takes the error that a call of GIO leaves behind: `call(..., error.out())`.
class GioError {
 public:
  GioError() = default;
  ~GioError() { g_clear_error(&m_error); }
  GioError(const GioError&) = delete;
  GioError& operator=(const GioError&) = delete;

  GError** out() { return &m_error; }
  bool is(GIOErrorEnum code) const {
    return g_error_matches(m_error, G_IO_ERROR, static_cast<int>(code)) != FALSE;
  }
  const char* message() const { return m_error == nullptr ? "no error" : m_error->message; }

 private:
  GError* m_error = nullptr;
};

/// Makes a context the one that callbacks of this thread's GIO calls come in, for a scope.
class ThreadDefaultContext {
 public:
  explicit ThreadDefaultContext(GMainContext* context) : m_context(context) {
    g_main_context_push_thread_default(m_context);
  }
  ~ThreadDefaultContext() { g_main_context_pop_thread_default(m_context); }
  ThreadDefaultContext(const ThreadDefaultContext&) = delete;
  ThreadDefaultContext& operator=(const ThreadDefaultContext&) = delete;

 private:
  GMainContext* m_context;
};

}  // namespace trelvo::network
