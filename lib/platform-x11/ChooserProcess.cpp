#include "lib/platform-x11/ChooserProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <sstream>

#include "lib/platform-x11/X11Frame.h"

extern char** environ;

namespace Vinta::X11 {

namespace {
std::mutex runningLock;
std::vector<const X11Frame*> running;  // one entry per child, by the frame it belongs to
}  // namespace

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

int ChooserProcess::runningFor(const X11Frame& frame) {
    std::lock_guard<std::mutex> guard(runningLock);
    return static_cast<int>(std::count(running.begin(), running.end(), &frame));
}

bool ChooserProcess::start(X11Frame& frame, const std::vector<std::string>& arguments, Done done) {
    if (arguments.empty() || frame.isClosing() || !frame.getDisplay()) return false;
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
    ::fcntl(pipeEnds[0], F_SETFL, ::fcntl(pipeEnds[0], F_GETFL) | O_NONBLOCK);
    auto* process = new ChooserProcess(frame, child, pipeEnds[0], std::move(done));
    if (frame.addCompanion(process)) return true;
    process->done = nullptr;
    process->detach();
    return false;
}

ChooserProcess::ChooserProcess(X11Frame& owner, pid_t program, int fd, Done whenDone)
    : frame(owner), child(program), outputFd(fd), done(std::move(whenDone)) {
    std::lock_guard<std::mutex> guard(runningLock);
    running.push_back(&frame);
}

ChooserProcess::~ChooserProcess() {
    if (outputFd >= 0) ::close(outputFd);
    std::lock_guard<std::mutex> guard(runningLock);
    running.erase(std::find(running.begin(), running.end(), &frame));
}

void ChooserProcess::readAvailable() {
    char buffer[4096];
    ssize_t got = 0;
    while (outputFd >= 0 && (got = ::read(outputFd, buffer, sizeof buffer)) != 0) {
        if (got > 0) {
            output.append(buffer, static_cast<size_t>(got));
        } else if (errno != EINTR) {
            if (errno == EAGAIN) return;
            break;
        }
    }
    ::close(outputFd);  // end of output, or a broken pipe
    outputFd = -1;
}

void ChooserProcess::service() {
    readAvailable();
    int status = 0;
    const pid_t reaped = ::waitpid(child, &status, WNOHANG);
    // A host that ignores SIGCHLD has its children reaped for it: the exit code is lost, and only
    // an answer on the output counts.
    const bool reapedForUs = reaped < 0 && errno == ECHILD;
    if (reaped != child && !reapedForUs) return;
    readAvailable();  // what it wrote just before leaving
    const bool succeeded = reapedForUs ? !output.empty() : WIFEXITED(status) && WEXITSTATUS(status) == 0;
    frame.removeCompanion(this);
    const Done whenDone = std::move(done);
    const std::string text = std::move(output);
    delete this;
    if (whenDone) whenDone(succeeded, text);
}

void ChooserProcess::detach() {
    frame.removeCompanion(this);
    ::kill(child, SIGTERM);
    // A dialog leaves at once on a terminate; one that ignores it is killed.
    int status = 0;
    for (int tries = 0; tries < 50 && ::waitpid(child, &status, WNOHANG) == 0; ++tries) ::usleep(2000);
    if (::waitpid(child, &status, WNOHANG) == 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
    }
    delete this;
}

}  // namespace Vinta::X11
