#include "web/finestra.h"

#include <utility>

#include "web/offline_page.h"
#include "web/script_expressions.h"

namespace orvalle::web {
namespace {

constexpr char kAutosaveName[] = "finestraPrincipale";
constexpr char kFrameKey[] = "NSWindow Frame finestraPrincipale";
constexpr char kMessageHandler[] = "orvalle";
constexpr char kAgree[] = "Va bene";
constexpr char kCancel[] = "Annulla";
/// How long a page may load pictures and the like before it is taken for complete.
constexpr std::chrono::seconds kLoading{5};
/// How long a page may keep the user waiting before they are asked.
constexpr std::chrono::seconds kPatience{10};

}  // namespace

Finestra::Finestra(const platform::Platform& platform, const link::WebAddress& address,
                   const Services& services)
    : platform_(platform),
      address_(address),
      services_(services),
      inbox_(platform.background, [this](const base::Json& body, std::function<void()> next) {
        handleMessage(body, std::move(next));
      }) {}

Finestra::~Finestra() = default;

void Finestra::mostra() {
  costruisci();
  bringToFront();
}

void Finestra::vai(const base::Url& url) {
  costruisci();
  load(url);
  bringToFront();
}

void Finestra::intitola(const std::string& title) {
  if (window_) window_->setTitle(title);
}

void Finestra::sveglia() {
  if (window_ && window_->hasPage()) window_->evaluate(kFocusExpression);
}

bool Finestra::comanda(const std::string& command, const std::optional<std::string>& id) {
  if (!window_ || !window_->hasPage()) return false;
  window_->evaluate(commandExpression(command, id));
  return true;
}

void Finestra::consegna(const std::string& command, const std::optional<std::string>& id) {
  if (ready_) {
    comanda(command, id);
  } else if (!failed_) {
    waiting_.emplace_back(command, id);
  }
}

void Finestra::rispondi(std::optional<std::int64_t> id, const std::string& text) {
  if (id && window_) window_->evaluate(replyExpression(*id, text));
}

void Finestra::costruisci() {
  if (window_) return;
  platform::WebWindowSpec spec;
  spec.title = "Orvalle";
  spec.contentSize = {1180, 820};
  spec.minimumSize = {720, 560};
  spec.stripHeight = StrisciaTrascinabile::altezza;
  spec.messageHandler = kMessageHandler;
  spec.documentStartScript = "document.documentElement.style.setProperty(\n  '--barra-titolo', '" +
                             std::to_string(StrisciaTrascinabile::altezza) + "px');";
  window_ = platform_.webWindows.make(spec, *this);
  strip_.emplace(window_->strip());
  window_->setFrameAutosaveName(kAutosaveName);
  if (!platform_.defaults.text(kFrameKey)) window_->center();
  load(indirizzo());
}

void Finestra::load(const base::Url& url) {
  trust_.willLoad(url.text());
  failed_ = false;
  window_->load(url.text());
}

void Finestra::bringToFront() {
  platform_.application.activate();
  window_->makeKeyAndOrderFront();
  sveglia();
}

void Finestra::mostraErrore(const std::string& description) {
  window_->loadHtml(offlinePage(description));
}

platform::NavigationPolicy Finestra::decidePolicy(const platform::NavigationAction& action) {
  if (!action.url || !action.linkActivated) return platform::NavigationPolicy::Allow;
  const auto target = base::parseOrigin(*action.url);
  if (target && target->host() == indirizzo().host()) return platform::NavigationPolicy::Allow;
  platform_.workspace.open(*action.url);
  return platform::NavigationPolicy::Cancel;
}

void Finestra::didStart(const std::string& url) {
  trust_.didStart(url);
  failed_ = false;
}

void Finestra::didCommit(const std::string& url) {
  trust_.didCommit(url);
  ready_ = false;
  loading_ = platform_.loop.after(kLoading, liveness_.guard([this] { deliver(); }));
}

void Finestra::didFinish() {
  deliver();
}

void Finestra::didFail(const std::string& description) {
  loading_.reset();
  ready_ = false;
  failed_ = true;
  waiting_.clear();
  mostraErrore(description);
}

void Finestra::deliver() {
  loading_.reset();
  if (!trust_.serves(indirizzo().host())) return;
  ready_ = true;
  for (const auto& [command, id] : std::exchange(waiting_, {})) comanda(command, id);
}

void Finestra::didStopAnswering() {
  waitForPage(kPatience - platform::kAnswerNotice);
}

void Finestra::didAnswerAgain() {
  patience_.reset();
  question_.reset();
}

void Finestra::waitForPage(std::chrono::seconds patience) {
  patience_ = platform_.loop.after(patience, liveness_.guard([this] { askWhetherToWait(); }));
}

void Finestra::askWhetherToWait() {
  question_ =
      platform_.alerts.showProgress({"La pagina non risponde",
                                     "È ferma da un po'. Puoi aspettare che riprenda, oppure ricaricarla.",
                                     {"Aspetta", "Ricarica"},
                                     0,
                                     0},
                                    liveness_.guard([this](std::size_t button) {
                                      question_.reset();
                                      if (button == 0) return waitForPage(kPatience);
                                      window_->startAnew();
                                    }));
}

void Finestra::runAlert(const std::string& message, std::function<void()> done) {
  platform_.application.activate();
  platform_.alerts.show({message, "", {kAgree}}, [done = std::move(done)](std::size_t) { done(); });
}

void Finestra::runConfirm(const std::string& message, std::function<void(bool)> done) {
  platform_.application.activate();
  platform_.alerts.show({message, "", {kAgree, kCancel}},
                        [done = std::move(done)](std::size_t button) { done(button == 0); });
}

void Finestra::chooseFiles(bool multiple, std::function<void(std::optional<std::vector<std::string>>)> done) {
  platform_.application.activate();
  platform_.openPanel.choose({"Scegli un modello 3D", "Scegli", multiple}, std::move(done));
}

}  // namespace orvalle::web
