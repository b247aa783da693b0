#pragma once

#include <QByteArray>
#include <QList>

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <vector>

namespace tarnwell::tests {

/// A program with its standard input and output in our hands. Killed, if it still runs, when this
/// object goes away.
class ChildProcess
{
public:
    explicit ChildProcess(const QList<QByteArray> &command)
    {
        int input[2], output[2];
        if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0)
            return;
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        std::vector<char *> arguments;
        for (const QByteArray &argument : command)
            arguments.push_back(const_cast<char *>(argument.constData()));
        arguments.push_back(nullptr);
        if (::posix_spawnp(&m_pid, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
            m_pid = -1;
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        m_input = input[1];
        m_output = output[0];
    }
    ~ChildProcess()
    {
        closeInput();
        if (m_pid > 0) {
            kill();
            wait();
        }
        ::close(m_output);
    }
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    bool isStarted() const { return m_pid > 0; }

    /// Whether the program could be given all of it.
    bool write(const QByteArray &bytes) const
    {
        return ::write(m_input, bytes.constData(), size_t(bytes.size())) == bytes.size();
    }

    /// The next line without its end; empty at the end of the output.
    QByteArray readLine()
    {
        QByteArray line;
        char c = 0;
        while (::read(m_output, &c, 1) == 1 && c != '\n')
            line.append(c);
        return line;
    }

    void closeInput()
    {
        if (m_input >= 0)
            ::close(m_input);
        m_input = -1;
    }

    void kill() const { ::kill(m_pid, SIGKILL); }

    /// The exit code; -1 for a process that was killed.
    int wait()
    {
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};

} // namespace tarnwell::tests
