#include "support/cli_runner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temp_folder.h"

namespace orchidlamp::testing {

static std::string Env(const char* name, const char* fallback) {
  const char* v = std::getenv(name);
  return v ? v : fallback;
}

CliRun RunCli(const std::vector<std::string>& args) {
  TempFolder scratch;
  const std::string outPath = scratch.File("out"), errPath = scratch.File("err");
  const std::string cli = Env("ORCHIDLAMP_CLI", ORCHIDLAMP_CLI_PATH);
  const pid_t pid = fork();
  if (pid == 0) {
    setenv("XDG_CONFIG_HOME", scratch.path().c_str(), 1);  // the user's own settings never leak in
    dup2(open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 1);
    dup2(open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 2);
    std::vector<char*> argv{const_cast<char*>(cli.c_str())};
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(cli.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  const Bytes out = ReadFile(outPath), err = ReadFile(errPath);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), {out.begin(), out.end()},
          {err.begin(), err.end()}};
}

std::string SamplePath() { return Env("ORCHIDLAMP_SAMPLE", ORCHIDLAMP_SAMPLE_PATH); }

}  // namespace orchidlamp::testing
