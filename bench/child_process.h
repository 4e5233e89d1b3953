#pragma once

// Running the phone as a process of its own, with its peak memory.

#include <QByteArray>
#include <QFile>
#include <QString>

#include <algorithm>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

// The process's high-water mark of resident memory, 0 once it has ended. (The rusage of a
// child would not do: it starts from this process's own peak at the spawn.)
inline long residentPeakKiB(pid_t process) {
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').front().toLong();
    }
    return 0;
}

// Runs the program once; false when it could not run or did not end with 0. Its peak memory
// is read while it runs, every 2 ms.
inline bool runProcess(const std::vector<std::string>& arguments, long* peakKiB) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, argv[0], nullptr, nullptr, argv.data(), environ) != 0)
        return false;
    int status = 0;
    *peakKiB = 0;
    for (;;) {
        *peakKiB = std::max(*peakKiB, residentPeakKiB(child));
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            break;
        if (ended < 0)
            return false;
        usleep(2000);
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
