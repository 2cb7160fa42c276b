#include "support/FullDisk.h"

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pvardo::test {

bool onFullDisk(qint64 fileSizeLimit, const std::function<bool()>& work)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0) {
        return false;
    }
    if (child == 0) {
        // The system would end the process with SIGXFSZ; ignored, the write
        // fails with an error as on a full disk.
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{static_cast<rlim_t>(fileSizeLimit), static_cast<rlim_t>(fileSizeLimit)};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(work() ? 0 : 1);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace pvardo::test
