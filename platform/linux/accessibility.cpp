#include "platform/accessibility.h"

#include <optional>

#include "base/liveness.h"
#include "platform/linux/factory.h"
#include "platform/linux/permissions_window.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kConsentKey[] = "accessibilitaConsentita";

/// The desktops have no such consent of their own: we keep it among the settings and ask for it ourselves.
class OwnConsent final : public Accessibility {
 public:
  OwnConsent(NativeApplication& application, Defaults& defaults, Alerts& alerts, std::string diaryFolder)
      : application_(application),
        defaults_(defaults),
        alerts_(alerts),
        diaryFolder_(std::move(diaryFolder)) {}

  bool trusted() const override { return defaults_.boolean(kConsentKey).value_or(false); }

  void prompt() override {
    if (asking_ || trusted()) return;
    asking_ = true;
    Alert question;
    question.message = "Vuoi che il diario delle attività legga i titoli delle finestre?";
    question.informative =
        "Finché il diario è acceso, Orvalle legge ogni cinque secondi il titolo della finestra che hai "
        "davanti: "
        "può contenere nomi di documenti, di pagine o di persone.\n\n"
        "I titoli restano su questo computer, nella cartella " +
        diaryFolder_ +
        ", che leggi solo tu; li mostra la pagina di Orvalle. Puoi ritirare il consenso quando vuoi in "
        "“Permessi di Orvalle”.";
    question.buttons = {"Consenti", "Non consentire"};
    // A Return that was meant for another window is no consent.
    question.returnButton = 1;
    alerts_.show(question, liveness_.guard([this](std::size_t button) { answered(button == 0); }));
  }

  void openSettings() override {
    if (asking_) {
      settingsWait_ = true;
      return;
    }
    if (!window_) {
      window_.emplace(application_.gtk(), diaryFolder_,
                      [this](bool consent) { defaults_.set(kConsentKey, consent); });
    }
    window_->show(trusted());
    window_->present();
  }

 private:
  void answered(bool consent) {
    asking_ = false;
    defaults_.set(kConsentKey, consent);
    if (window_) window_->show(consent);
    if (std::exchange(settingsWait_, false)) openSettings();
  }

  NativeApplication& application_;
  Defaults& defaults_;
  Alerts& alerts_;
  std::string diaryFolder_;
  bool asking_ = false;
  bool settingsWait_ = false;
  std::optional<PermissionsWindow> window_;
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<Accessibility> makeAccessibility(NativeApplication& application, Defaults& defaults,
                                                 Alerts& alerts, const UserFolders& folders) {
  return std::make_unique<OwnConsent>(application, defaults, alerts,
                                      (folders.applicationSupport() / "Orvalle" / "attivita").string());
}

}  // namespace orvalle::platform::linuxos
