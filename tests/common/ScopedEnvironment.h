#pragma once

#include <QByteArray>
#include <utility>

namespace pvardo::test {

// Sets (or unsets) an environment variable for the life of the object and
// puts the old value back after.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const char* name, const QByteArray& value, bool unset = false)
        : m_name(name)
        , m_hadValue(qEnvironmentVariableIsSet(name))
        , m_old(qgetenv(name))
    {
        if (unset) {
            qunsetenv(name);
        } else {
            qputenv(name, value);
        }
    }
    static ScopedEnvironment unset(const char* name) { return ScopedEnvironment(name, QByteArray(), true); }
    ~ScopedEnvironment()
    {
        if (m_hadValue) {
            qputenv(m_name, m_old);
        } else {
            qunsetenv(m_name);
        }
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const char* m_name;
    bool m_hadValue;
    QByteArray m_old;
};

} // namespace pvardo::test
