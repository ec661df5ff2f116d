#include "lib/platform-x11/ChooserProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>

extern char** environ;

namespace Vinta::X11 {

std::string ChooserProcess::findOnPath(const std::vector<std::string>& names) {
    const char* path = std::getenv("PATH");
    if (!path) return {};
    for (const std::string& name : names) {
        std::istringstream folders(path);
        std::string folder;
        while (std::getline(folders, folder, ':')) {
            if (folder.empty()) continue;
            const std::string candidate = folder + "/" + name;
            struct stat info {};
            if (::stat(candidate.c_str(), &info) == 0 && S_ISREG(info.st_mode) && ::access(candidate.c_str(), X_OK) == 0)
                return candidate;
        }
    }
    return {};
}

bool ChooserProcess::run(const std::vector<std::string>& arguments, const std::function<bool(int)>& whileWaiting,
                         std::string& output) {
    output.clear();
    cancelled = false;
    if (arguments.empty()) return false;
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], 1);
    std::vector<char*> argv;
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    if (spawned != 0) {
        ::close(pipeEnds[0]);
        return false;
    }
    bool open = true;
    while (open) {
        if (cancelled.load() || (whileWaiting && !whileWaiting(0))) {
            cancelled = true;
            ::kill(child, SIGTERM);
            break;
        }
        pollfd watched{pipeEnds[0], POLLIN, 0};
        if (::poll(&watched, 1, 20) <= 0) continue;
        char buffer[4096];
        const ssize_t got = ::read(pipeEnds[0], buffer, sizeof buffer);
        if (got > 0)
            output.append(buffer, static_cast<size_t>(got));
        else if (got == 0 || errno != EINTR)
            open = false;
    }
    ::close(pipeEnds[0]);
    int status = 0;
    // The pipe closes as the program exits; keep the window alive while it finishes.
    while (::waitpid(child, &status, WNOHANG) == 0) {
        if (whileWaiting) whileWaiting(10);
        ::usleep(2000);
    }
    if (cancelled.load()) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace Vinta::X11
