#pragma once

#include <gio/gio.h>

#include <memory>
#include <utility>

namespace orvalle::platform::linuxos {

/// Releases what GLib-style functions hand out.
struct GlibDeleter {
  void operator()(char* text) const { g_free(text); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};

template <typename Type>
using GlibPtr = std::unique_ptr<Type, GlibDeleter>;

/// Owns one reference to a GObject.
template <typename Type>
class GObjectPtr {
 public:
  GObjectPtr() = default;
  GObjectPtr(const GObjectPtr& other) : object_(other.object_) {
    if (object_) g_object_ref(object_);
  }
  GObjectPtr(GObjectPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GObjectPtr& operator=(GObjectPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GObjectPtr() { g_clear_object(&object_); }

  /// Takes over a reference that the caller owns.
  static GObjectPtr adopt(Type* object) {
    GObjectPtr pointer;
    pointer.object_ = object;
    return pointer;
  }
  /// Adds a reference; sinks a floating one.
  static GObjectPtr share(Type* object) {
    return adopt(object ? static_cast<Type*>(g_object_ref_sink(object)) : nullptr);
  }

  Type* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Type* object_ = nullptr;
};

/// A signal handler that is disconnected when this goes away, whichever of the two dies first.
class [[nodiscard]] SignalConnection {
 public:
  SignalConnection() = default;
  SignalConnection(gpointer instance, const char* signal, GCallback handler, gpointer data)
      : instance_(G_OBJECT(instance)), id_(g_signal_connect(instance, signal, handler, data)) {
    g_object_add_weak_pointer(instance_, reinterpret_cast<gpointer*>(&instance_));
  }
  SignalConnection(const SignalConnection&) = delete;
  SignalConnection& operator=(const SignalConnection&) = delete;
  ~SignalConnection() {
    if (!instance_) return;
    g_object_remove_weak_pointer(instance_, reinterpret_cast<gpointer*>(&instance_));
    g_signal_handler_disconnect(instance_, id_);
  }

 private:
  GObject* instance_ = nullptr;
  gulong id_ = 0;
};

}  // namespace orvalle::platform::linuxos
