#include "common/NetworkUser.h"

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace pvardo {

QString GetNetworkUser()
{
    // The account database first: it cannot be changed by the environment.
    long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(static_cast<std::size_t>(size > 0 ? size : 16384));
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found
        && found->pw_name) {
        return QString::fromLocal8Bit(found->pw_name);
    }
    for (const char* name : {"USER", "LOGNAME"}) {
        const QString value = qEnvironmentVariable(name);
        if (!value.isEmpty()) {
            return value;
        }
    }
    return {};
}

} // namespace pvardo
