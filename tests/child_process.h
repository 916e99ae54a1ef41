// Runs part of a test in a child process with its own standard input, for
// code that reads the console or ends the process.
#pragma once
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

struct ChildResult {
    int exitCode = -1;  // -1 when the child did not exit normally
    std::string output;  // standard output and error together
};

// stdinText null: standard input is closed outright; otherwise the child
// reads the text, then end of input. fn's result is the exit code.
template <typename Fn>
ChildResult RunInChild(const std::string* stdinText, Fn fn) {
    ChildResult result;
    char outPath[] = "/tmp/verimond_child_XXXXXX";
    int out = mkstemp(outPath), in[2];
    if (out < 0 || pipe(in) != 0) return result;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(in[0], 0);
        dup2(out, 1);
        dup2(out, 2);
        close(in[1]);
        if (stdinText == nullptr) close(0);
        int code = fn();
        fflush(nullptr);
        _exit(code);
    }
    signal(SIGPIPE, SIG_IGN);  // the child may stop reading early
    close(in[0]);
    if (stdinText != nullptr) (void)!write(in[1], stdinText->data(), stdinText->size());
    close(in[1]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    std::ifstream f(outPath, std::ios::binary);
    result.output.assign(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
    close(out);
    unlink(outPath);
    return result;
}
