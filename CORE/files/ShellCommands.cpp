#include "CORE/files/ShellCommands.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace Core {

namespace {
std::vector<std::string> splitCommandLine(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false;
    bool inWord = false;
    for (char c : text) {
        if (c == '"') {
            quoted = !quoted;
            inWord = true;
        } else if ((c == ' ' || c == '\t') && !quoted) {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) words.push_back(word);
    return words;
}

// Forks twice so the program is adopted by init and never left as our zombie; a close-on-exec
// pipe tells whether the exec succeeded.
bool spawnDetached(const std::vector<std::string>& words) {
    if (words.empty()) return false;
    std::vector<char*> argv;
    for (const std::string& w : words) argv.push_back(const_cast<char*>(w.c_str()));
    argv.push_back(nullptr);

    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) return false;
    const pid_t child = fork();
    if (child < 0) {
        close(report[0]);
        close(report[1]);
        return false;
    }
    if (child == 0) {
        setsid();
        const pid_t grandchild = fork();
        if (grandchild == 0) {
            execvp(argv[0], argv.data());
            const int error = errno;
            [[maybe_unused]] const ssize_t n = ::write(report[1], &error, sizeof error);
            _exit(127);
        }
        _exit(grandchild < 0 ? 1 : 0);
    }
    close(report[1]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    int error = 0;
    ssize_t got;
    while ((got = ::read(report[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    close(report[0]);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 && got == 0;
}
}  // namespace

bool openWithShell(const std::string& path) { return spawnDetached({"xdg-open", path}); }

bool runCommandLine(const std::string& text) { return spawnDetached(splitCommandLine(text)); }

}  // namespace Core
