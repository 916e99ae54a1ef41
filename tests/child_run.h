// Runs a piece of a test in a forked child, for what ends the process or
// needs other credentials; its reports go to a fresh log directory.
#pragma once
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

struct ChildOutcome {
    int exitStatus = -1;  // -1 when the child did not exit normally
    std::string console;  // what it wrote to standard error
    std::string log;      // the apierr.log it left, if any
};

inline std::string ReadWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

namespace child_run_detail {
// stdinMode: 0 leaves standard input as it is, 1 closes it, 2 feeds text.
inline ChildOutcome Run(const std::function<int()>& body, int stdinMode, const std::string& text,
                        bool captureStdout) {
    ChildOutcome outcome;
    char dir[] = "/tmp/verimond_childXXXXXX";
    if (mkdtemp(dir) == nullptr) return outcome;
    std::string base(dir);
    {
        std::ofstream options(base + "/options");
        options << "ErrorLogDir=" << base << "\n";
    }
    int in[2] = {-1, -1};
    if (stdinMode == 2 && pipe(in) != 0) return outcome;
    std::fflush(nullptr);
    pid_t child = fork();
    if (child == 0) {
        setenv("VERIMOND_OPTIONS", (base + "/options").c_str(), 1);
        int fd = open((base + "/stderr").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (fd < 0 || dup2(fd, 2) < 0) _exit(99);
        if (captureStdout && dup2(fd, 1) < 0) _exit(99);
        if (stdinMode == 1) close(0);
        if (stdinMode == 2) {
            dup2(in[0], 0);
            close(in[1]);
        }
        int code = body();
        std::fflush(nullptr);
        _exit(code);
    }
    if (stdinMode == 2) {
        signal(SIGPIPE, SIG_IGN);  // the child may stop reading early
        close(in[0]);
        (void)!write(in[1], text.data(), text.size());
        close(in[1]);
    }
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) {
        outcome.exitStatus = WEXITSTATUS(status);
    }
    outcome.console = ReadWholeFile(base + "/stderr");
    outcome.log = ReadWholeFile(base + "/apierr.log");
    for (const char* name : {"/options", "/stderr", "/apierr.log"}) unlink((base + name).c_str());
    rmdir(dir);
    return outcome;
}
}  // namespace child_run_detail

// body's result is the child's exit status.
inline ChildOutcome RunInChild(const std::function<int()>& body) {
    return child_run_detail::Run(body, 0, "", false);
}

// For code that reads the console: stdinText null closes standard input,
// otherwise the child reads the text and then end of input. Standard output
// joins standard error in console.
inline ChildOutcome RunInChildWithInput(const std::string* stdinText, const std::function<int()>& body) {
    return child_run_detail::Run(body, stdinText == nullptr ? 1 : 2, stdinText == nullptr ? "" : *stdinText, true);
}
