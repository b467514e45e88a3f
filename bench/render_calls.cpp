// Calls render() a given number of times on the memory platform, for counting instructions: the difference
// between two runs with different counts is the cost of the calls alone.

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "app/controller.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/web/memory_services.h"

namespace {

using namespace orvalle;

std::string stateWithTasks(int count) {
  std::string state =
      R"({"running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"Misura","tasks":[)";
  for (int i = 0; i < count; ++i) {
    if (i > 0) state += ',';
    const auto number = std::to_string(i);
    state += R"({"id":"task-)" + number + R"(","title":"Compito numero )" + number + R"(","done":false})";
  }
  return state + "]}";
}

bool readNumber(const char* text, int& number) {
  const char* end = text + std::strlen(text);
  const auto result = std::from_chars(text, end, number);
  return result.ec == std::errc() && result.ptr == end && number >= 0;
}

}  // namespace

int main(int argc, char** argv) {
  int tasks = 0;
  int calls = 0;
  if (argc != 3 || !readNumber(argv[1], tasks) || !readNumber(argv[2], calls)) {
    std::fprintf(stderr, "usage: render_calls TASKS CALLS\n");
    return 2;
  }
  platform::memory::MemoryPlatform memory;
  const auto platform = memory.platform();
  memory.environment.variables["ORVALLE_APP_URL"] = "http://localhost/";
  const link::Config config(platform.defaults);
  const link::WebAddress address(platform.environment, platform.defaults, "https://app.orvalle.example/");
  const web::MemoryServices services(platform);
  app::Controller controller(platform, address, config, services, {});

  const auto state = stateWithTasks(tasks);
  memory.application.session = [&](platform::ApplicationDelegate& delegate) {
    auto& page = *memory.webWindows.made.front();
    page.commit();
    page.post(state);
    // Showing and hiding the overlay is the shortest way to a render; an even number of times leaves it as it
    // was.
    platform::MenuItem sender("", "");
    for (int call = 0; call < calls; ++call) delegate.perform("toggleOverlay", sender);
  };
  const int status = platform.application.run(controller);
  const bool shown = memory.statusBar.state.menu->items().size() == 14U + static_cast<unsigned>(tasks);
  if (!shown) std::fprintf(stderr, "render_calls: the tasks are not in the menu\n");
  return shown ? status : 1;
}
