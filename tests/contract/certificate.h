#pragma once

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A self-signed certificate for this host name, made anew.
inline platform::linuxos::GObjectPtr<GTlsCertificate> makeCertificate(const std::string& host) {
  using platform::linuxos::GlibPtr;
  const auto folder = std::filesystem::path(testing::TempDir());
  const auto file = (folder / ("certificate-" + host + ".pem")).string();
  const auto name = "/CN=" + host;
  const auto alternative = "subjectAltName=DNS:" + host;
  const char* arguments[] = {
      "openssl", "req",        "-x509", "-newkey", "ec",         "-pkeyopt", "ec_paramgen_curve:P-256",
      "-nodes",  "-days",      "2",     "-subj",   name.c_str(), "-addext",  alternative.c_str(),
      "-keyout", file.c_str(), "-out",  "-",       nullptr};
  char* text = nullptr;
  int status = 1;
  g_spawn_sync(nullptr, const_cast<char**>(arguments), nullptr,
               static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDERR_TO_DEV_NULL), nullptr, nullptr,
               &text, nullptr, &status, nullptr);
  const GlibPtr<char> certificate(text);
  if (status != 0) return {};
  char* key = nullptr;
  if (!g_file_get_contents(file.c_str(), &key, nullptr, nullptr)) return {};
  const GlibPtr<char> ownedKey(key);
  std::filesystem::remove(file);
  const auto both = std::string(certificate.get()) + key;
  return platform::linuxos::GObjectPtr<GTlsCertificate>::adopt(
      g_tls_certificate_new_from_pem(both.c_str(), static_cast<gssize>(both.size()), nullptr));
}

/// Makes this certificate, and no other, what the system trusts, as long as it lives.
class Trust {
 public:
  explicit Trust(GTlsCertificate* certificate) {
    char* text = nullptr;
    g_object_get(certificate, "certificate-pem", &text, nullptr);
    const platform::linuxos::GlibPtr<char> owned(text);
    g_file_set_contents(file_.c_str(), text, -1, nullptr);
    const auto database =
        platform::linuxos::GObjectPtr<GTlsDatabase>::adopt(g_tls_file_database_new(file_.c_str(), nullptr));
    g_tls_backend_set_default_database(g_tls_backend_get_default(), database.get());
  }
  Trust(const Trust&) = delete;
  Trust& operator=(const Trust&) = delete;
  ~Trust() {
    g_tls_backend_set_default_database(g_tls_backend_get_default(), nullptr);
    std::filesystem::remove(file_);
  }

 private:
  std::string file_ = (std::filesystem::path(testing::TempDir()) / "trusted.pem").string();
};

}  // namespace orvalle::contract
