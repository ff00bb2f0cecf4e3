#include "tests/end_to_end/child.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace reelvane {

Child::Child(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    const int error =
        ::posix_spawnp(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    output_ = ends[0];
    if (error != 0) throw std::runtime_error("cannot run " + command.front());
}

Child::~Child() {
    if (pid_ > 0) {
        send(SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    ::close(output_);
}

void Child::send(int signal) const {
    ::kill(pid_, signal);
}

Outcome Child::wait() {
    Outcome outcome;
    std::array<char, 65536> piece{};
    ssize_t length = 0;
    while ((length = ::read(output_, piece.data(), piece.size())) > 0) {
        outcome.output.append(piece.data(), static_cast<std::size_t>(length));
    }
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return outcome;
}

Outcome run(const std::vector<std::string>& command) {
    return Child(command).wait();
}

}  // namespace reelvane
