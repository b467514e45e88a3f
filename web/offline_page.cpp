#include "web/offline_page.h"

namespace orvalle::web {
namespace {

constexpr char kBefore[] = R"(<!doctype html><meta charset=utf-8>
<style>
  body{font:600 15px/1.5 -apple-system,system-ui;margin:0;height:100vh;
       display:grid;place-items:center;text-align:center;color:#3a3a4a;
       background:#fff}
  @media (prefers-color-scheme:dark){body{background:#1c1c22;color:#d8d8e0}}
  p{max-width:34ch;margin:.4rem 0}
  b{font-size:19px}
</style>
<div>
  <p><b>Non riesco a raggiungere Orvalle</b></p>
  <p>Controlla la connessione. Le schermate che hai già aperto restano
     disponibili offline: riprova fra un momento.</p>
  <p style="opacity:.6;font-size:13px">)";

constexpr char kAfter[] = "</p>\n</div>";

}  // namespace

std::string offlinePage(const std::string& description) {
  return kBefore + description + kAfter;
}

}  // namespace orvalle::web
