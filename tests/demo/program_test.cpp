// The whole program, started as a user starts it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/demo/http_client.h"
#include "tests/demo/temporary_folder.h"

extern char** environ;

namespace orvalle::demo {
namespace {

using std::filesystem::path;

constexpr std::chrono::seconds kPatience{20};

template <typename Condition>
bool eventually(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

std::string contentOf(const path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool runs(pid_t process) {
  return kill(process, 0) == 0;
}

/// A started program with its two outputs in files.
class Program {
 public:
  Program(const path& program, std::vector<std::string> arguments, const path& folder)
      : output_(folder / "output"), errors_(folder / "errors") {
    arguments.insert(arguments.begin(), program.string());
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::string state = "XDG_STATE_HOME=" + (folder / "state").string();
    std::vector<char*> variables{state.data()};
    for (char** variable = environ; *variable; ++variable) {
      if (!std::string_view(*variable).starts_with("XDG_STATE_HOME=")) variables.push_back(*variable);
    }
    variables.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 1, output_.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&files, 2, errors_.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
    EXPECT_EQ(posix_spawn(&process_, program.c_str(), &files, nullptr, argv.data(), variables.data()), 0);
    posix_spawn_file_actions_destroy(&files);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (ended_ || process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }

  void signal(int number) const { kill(process_, number); }
  std::string output() const { return contentOf(output_); }
  std::string errors() const { return contentOf(errors_); }

  /// The exit status; -1 when it does not end or ends by a signal.
  int wait() {
    int status = 0;
    ended_ = eventually([&] { return waitpid(process_, &status, WNOHANG) == process_; });
    return ended_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// The port in the line that says where the server is; 0 when no such line comes.
  unsigned port() const {
    const std::string start = "orvalle-demo: http://localhost:";
    if (!eventually([&] { return output().ends_with("/\n"); }) || !output().starts_with(start)) return 0;
    return static_cast<unsigned>(std::stoul(output().substr(start.size())));
  }

 private:
  path output_;
  path errors_;
  pid_t process_ = 0;
  bool ended_ = false;
};

class ProgramTest : public testing::Test {
 protected:
  Program start(std::vector<std::string> arguments) {
    return Program(ORVALLE_DEMO_PROGRAM, std::move(arguments), folder_.path());
  }

  std::vector<std::string> withApp(const std::string& script) {
    const path app = folder_.write("app", "#!/bin/sh\n" + script);
    std::filesystem::permissions(app, std::filesystem::perms::owner_all);
    return {"--port", "0", "--page", ORVALLE_DEMO_PAGE, "--app", app.string()};
  }

  std::string inFolder(const std::string& name) const { return (folder_.path() / name).string(); }

  TemporaryFolder folder_;
};

TEST_F(ProgramTest, showsItsVersionAndItsHelp) {
  Program version = start({"--version"});
  EXPECT_EQ(version.wait(), 0);
  EXPECT_EQ(version.output(), "orvalle-demo " ORVALLE_VERSION "\n");
  Program help = start({"--help"});
  EXPECT_EQ(help.wait(), 0);
  EXPECT_TRUE(help.output().starts_with("Uso: orvalle-demo")) << help.output();
}

TEST_F(ProgramTest, explainsWhatIsWrong) {
  Program unknown = start({"--boh"});
  EXPECT_EQ(unknown.wait(), 2);
  EXPECT_EQ(unknown.errors(), "orvalle-demo: opzione sconosciuta: --boh\n");
  Program pageless = start({"--serve-only", "--page", inFolder("")});
  EXPECT_EQ(pageless.wait(), 1);
  EXPECT_TRUE(pageless.errors().starts_with("orvalle-demo: nessuna pagina in ")) << pageless.errors();
  Program appless = start({"--port", "0", "--page", ORVALLE_DEMO_PAGE, "--app", inFolder("niente")});
  EXPECT_EQ(appless.wait(), 1);
  EXPECT_TRUE(appless.errors().starts_with("orvalle-demo: impossibile avviare ")) << appless.errors();
}

TEST_F(ProgramTest, servesTheRealPageUntilItIsAskedToEnd) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program = start({"--serve-only", "--port", "0", "--page", ORVALLE_DEMO_PAGE});
    const unsigned port = program.port();
    ASSERT_NE(port, 0U);
    EXPECT_EQ(ask(port, "GET", "/app.js").status, 200);
    EXPECT_EQ(ask(port, "GET", "/sprint").header("Content-Type"), "text/html; charset=utf-8");
    program.signal(signal);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_FALSE(Connection("127.0.0.1", port).connected());
    EXPECT_EQ(program.output(), "orvalle-demo: http://localhost:" + std::to_string(port) + "/\n");
    EXPECT_EQ(program.errors(), "");
  }
}

TEST_F(ProgramTest, itsKeysAreKeptUnlessTheyAreGiven) {
  const auto keys = [](const Program& program) {
    return ask(program.port(), "GET", "/api/abbinamento").body;
  };
  const std::vector<std::string> serve{"--serve-only", "--port", "0", "--page", ORVALLE_DEMO_PAGE};
  std::string first;
  {
    Program program = start(serve);
    first = keys(program);
    EXPECT_EQ(contentOf(inFolder("state/orvalle-demo/keys.json")), first + "\n");
  }
  {
    Program program = start(serve);
    EXPECT_EQ(keys(program), first);
  }
  {
    std::vector<std::string> elsewhere = serve;
    elsewhere.insert(elsewhere.end(), {"--keys", inFolder("altre.json")});
    Program program = start(elsewhere);
    EXPECT_NE(keys(program), first);
  }
  setenv("ORVALLE_DEMO_ANON_KEY", "eyJdata", 1);
  setenv("ORVALLE_DEMO_CHANNEL_KEY", "abc", 1);
  Program program = start(serve);
  unsetenv("ORVALLE_DEMO_ANON_KEY");
  unsetenv("ORVALLE_DEMO_CHANNEL_KEY");
  EXPECT_EQ(keys(program), R"({"anonKey":"eyJdata","channelKey":"abc"})");
}

TEST_F(ProgramTest, opensTheAppOnItsAddressAndEndsAsItEnds) {
  Program program =
      start(withApp("printf '%s' \"$ORVALLE_APP_URL\" >'" + inFolder("address") + "'\nexit 7\n"));
  EXPECT_EQ(program.wait(), 7);
  EXPECT_EQ(contentOf(inFolder("address")), "http://localhost:" + std::to_string(program.port()) + "/");
}

TEST_F(ProgramTest, anAppEndedByASignalShowsInTheStatus) {
  Program program = start(withApp("kill -KILL $$\n"));
  EXPECT_EQ(program.wait(), 128 + SIGKILL);
}

TEST_F(ProgramTest, askedToEndItEndsTheAppFirst) {
  // The app says whether the server still answers while it ends.
  Program program = start(withApp("trap 'ended=1' TERM\necho $$ >'" + inFolder("pid") +
                                  "'\nwhile [ -z \"$ended\" ]; do sleep 0.05; done\n"
                                  "touch '" +
                                  inFolder("ending") +
                                  "'\n"
                                  "while [ ! -e '" +
                                  inFolder("go") + "' ]; do sleep 0.05; done\nexit 3\n"));
  const unsigned port = program.port();
  ASSERT_NE(port, 0U);
  ASSERT_TRUE(eventually([&] { return contentOf(inFolder("pid")).ends_with('\n'); }));
  program.signal(SIGTERM);
  ASSERT_TRUE(eventually([&] { return std::filesystem::exists(inFolder("ending")); }));
  EXPECT_EQ(ask(port, "GET", "/").status, 200);
  folder_.write("go", "");
  EXPECT_EQ(program.wait(), 3);
  EXPECT_FALSE(runs(std::stoi(contentOf(inFolder("pid")))));
}

TEST_F(ProgramTest, anAppThatWillNotEndIsEndedByForce) {
  Program program =
      start(withApp("trap '' TERM\necho $$ >'" + inFolder("pid") + "'\nwhile :; do sleep 0.2; done\n"));
  ASSERT_TRUE(eventually([&] { return contentOf(inFolder("pid")).ends_with('\n'); }));
  program.signal(SIGTERM);
  EXPECT_EQ(program.wait(), 128 + SIGKILL);
  EXPECT_FALSE(runs(std::stoi(contentOf(inFolder("pid")))));
}

TEST_F(ProgramTest, inABundleItFindsThePageAndTheApp) {
  const path bundle = folder_.path() / "Orvalle.app";
  const path program = bundle / "bin/orvalle-demo";
  std::filesystem::create_directories(program.parent_path());
  std::filesystem::copy_file(ORVALLE_DEMO_PROGRAM, program);
  folder_.write("Orvalle.app/share/orvalle-demo/page/index.html", "<!doctype html>");
  const path app = folder_.write("Orvalle.app/AppRun", "#!/bin/sh\nexit 5\n");
  std::filesystem::permissions(app, std::filesystem::perms::owner_all);
  Program started(program, {"--port", "0"}, folder_.path());
  EXPECT_EQ(started.wait(), 5) << started.errors();
}

}  // namespace
}  // namespace orvalle::demo
