#include "update/swap_script.h"

namespace orvalle::update {

std::string swapScript(const platform::PackageTools& tools) {
  return R"(#!/bin/sh
# Aspetta che Orvalle esca, mette la nuova al posto della vecchia,
# e la riapre. Poi si cancella.
pid=$1
for _ in $(seq 1 100); do
  kill -0 "$pid" 2>/dev/null || break
  sleep 0.1
done
/bin/rm -rf "$2"
)" + tools.copyLine() +
         " || exit 1\n/bin/rm -rf \"$3\"\n" + tools.openLine() + "\n/bin/rm -f \"$0\"";
}

}  // namespace orvalle::update
