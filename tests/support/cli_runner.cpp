#include "support/cli_runner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temp_folder.h"

namespace orchidlamp::testing {
namespace {

std::string Env(const char* name, const char* fallback) {
  const char* v = std::getenv(name);
  return v ? v : fallback;
}

}  // namespace

CliRun RunCli(const std::vector<std::string>& args) {
  TempFolder scratch;
  const std::string outPath = scratch.File("out"), errPath = scratch.File("err");
  const std::string cli = Env("ORCHIDLAMP_CLI", ORCHIDLAMP_CLI_PATH);
  const pid_t pid = fork();
  if (pid == 0) {
    // A private settings store, so the user's own settings never leak in.
    setenv("XDG_CONFIG_HOME", scratch.path().c_str(), 1);
    const int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(out, 1);
    dup2(err, 2);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(cli.c_str()));
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(cli.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  CliRun run;
  run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  const Bytes out = ReadFile(outPath), err = ReadFile(errPath);
  run.out.assign(out.begin(), out.end());
  run.err.assign(err.begin(), err.end());
  return run;
}

std::string SamplePath() { return Env("ORCHIDLAMP_SAMPLE", ORCHIDLAMP_SAMPLE_PATH); }

}  // namespace orchidlamp::testing
