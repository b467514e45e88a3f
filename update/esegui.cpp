#include "update/esegui.h"

#include <utility>

#include "base/text.h"

namespace orvalle::update {

base::Subscription esegui(platform::Processes& processes, const platform::Command& command,
                          std::function<void(const Esito&)> done) {
  return processes.run(command.path, command.arguments,
                       [tool = (command.tool.empty() ? command.path : command.tool).string(),
                        done = std::move(done)](const platform::ProcessOutcome& outcome) {
                         if (outcome.launchError) return done({"", *outcome.launchError});
                         Esito esito;
                         if (base::isValidUtf8(outcome.output)) esito.output = outcome.output;
                         if (outcome.status != 0) esito.errore = esito.output.empty() ? tool : esito.output;
                         done(esito);
                       });
}

}  // namespace orvalle::update
