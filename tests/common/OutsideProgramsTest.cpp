#include "common/OutsidePrograms.h"

#include "ScopedEnvironment.h"
#include "common/ProgramEnd.h"
#include "common/Session.h"
#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::ScopedEnvironment;
using pvardo::test::scriptedPrompts;

namespace {

// A desktop of its own: XDG folders in a temporary folder, and a PATH without
// the system's browsers.
class OwnDesktop
{
public:
    OwnDesktop()
        : m_config("XDG_CONFIG_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("config"))))
        , m_configDirs("XDG_CONFIG_DIRS", QFile::encodeName(m_dir.filePath(QStringLiteral("etc"))))
        , m_data("XDG_DATA_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("data"))))
        , m_dataDirs("XDG_DATA_DIRS", QFile::encodeName(m_dir.filePath(QStringLiteral("share"))))
        , m_path("PATH", QFile::encodeName(m_dir.filePath(QStringLiteral("bin"))))
    {
        QDir(m_dir.path()).mkpath(QStringLiteral("config"));
        QDir(m_dir.path()).mkpath(QStringLiteral("data/applications"));
        QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
    }

    void addApplication(const QString& id, const QString& exec, const QString& mimeType)
    {
        write(QStringLiteral("data/applications/") + id,
            QStringLiteral("[Desktop Entry]\nType=Application\nName=Test\nExec=") + exec + QLatin1Char('\n'));
        m_defaults += mimeType + QLatin1Char('=') + id + QStringLiteral(";\n");
        write(
            QStringLiteral("config/mimeapps.list"), QStringLiteral("[Default Applications]\n") + m_defaults);
    }

    QString path(const QString& name) const { return m_dir.filePath(name); }

    void write(const QString& name, const QString& text) const
    {
        QFile file(m_dir.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(text.toUtf8());
    }

private:
    QTemporaryDir m_dir;
    ScopedEnvironment m_config;
    ScopedEnvironment m_configDirs;
    ScopedEnvironment m_data;
    ScopedEnvironment m_dataDirs;
    ScopedEnvironment m_path;
    QString m_defaults;
};

// Records EndProgram instead of ending the test program.
class EndRecorder
{
public:
    EndRecorder()
    {
        m_previous = setProgramEndHandler([this](int code) {
            ++m_calls;
            m_code = code;
        });
    }
    ~EndRecorder() { setProgramEndHandler(m_previous); }
    int calls() const { return m_calls; }

private:
    ProgramEndHandler m_previous;
    int m_calls = 0;
    int m_code = -1;
};

} // namespace

TEST(OutsidePrograms, ProgramOfADesktopEntry)
{
    QTemporaryDir dir;
    const struct
    {
        const char* exec;
        const char* program;
    } cases[] = {
        {"/bin/sh %u", "/bin/sh"},
        {"\"/bin/sh\" -c true %f", "/bin/sh"},
        {"/no/such/browser %u", ""},
        {"", ""},
    };
    for (const auto& c : cases) {
        const QString file = dir.filePath(QStringLiteral("app.desktop"));
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QByteArray("[Desktop Action new]\nExec=/bin/false\n[Desktop Entry]\nName=x\nExec=") + c.exec
            + "\n");
        out.close();
        EXPECT_EQ(detail::programOfDesktopEntry(file), QString::fromUtf8(c.program)) << c.exec;
    }
}

TEST(OutsidePrograms, FindDefaultBrowserTakesTheDesktopsChoiceWithOneBlank)
{
    OwnDesktop desktop;
    desktop.addApplication(
        QStringLiteral("testbrowser.desktop"), QStringLiteral("/bin/sh %u"), QStringLiteral("text/html"));
    EXPECT_EQ(FindDefaultBrowser(), QStringLiteral("/bin/sh "));
    EXPECT_EQ(session().DefaultBrowser, QStringLiteral("/bin/sh "));
    EXPECT_TRUE(session().DefaultBrowserFound);
}

TEST(OutsidePrograms, FindDefaultBrowserWithoutAnyBrowser)
{
    OwnDesktop desktop;
    session().DefaultBrowser = QStringLiteral("stale ");
    EXPECT_EQ(FindDefaultBrowser(), QString());
    EXPECT_FALSE(session().DefaultBrowserFound);
    EXPECT_FALSE(QFile::exists(QDir::tempPath() + QStringLiteral("/dummy.html")));
}

TEST(OutsidePrograms, OpenInBrowserEndsTheProgramWithoutABrowser)
{
    const struct
    {
        const char* browser;
        bool found;
        const char* message;
    } cases[] = {
        {"", false,
            "The browser selected cannot be found on your computer. Please contact your administrator."},
        {"/no/such/browser ", true,
            "The browser selected cannot be found on your computer. Please contact your administrator."},
        {"/bin/sh ", false, "Your default browser does not exists. Please contact your administrator."},
    };
    for (const auto& c : cases) {
        scriptedPrompts().clear();
        EndRecorder end;
        session().DefaultBrowser = QString::fromUtf8(c.browser);
        session().DefaultBrowserFound = c.found;
        OpenInBrowser(QStringLiteral("http://example.org/"));
        EXPECT_EQ(end.calls(), 1) << c.browser;
        EXPECT_EQ(scriptedPrompts().shownTexts(), QStringList{QString::fromUtf8(c.message)}) << c.browser;
    }
}

TEST(OutsidePrograms, OpenInBrowserOfABadTargetSaysWhyAndEndsTheProgram)
{
    OwnDesktop desktop;
    QTemporaryDir dir;
    session().DefaultBrowser = QStringLiteral("/bin/sh ");
    session().DefaultBrowserFound = true;
    const QString missingFolder = dir.filePath(QStringLiteral("gone/plan.pdf"));
    const QString missingFile = dir.filePath(QStringLiteral("plan.pdf"));
    const struct
    {
        QString target;
        QString message;
    } cases[] = {
        {missingFolder,
            QStringLiteral("The path for ") + missingFolder
                + QStringLiteral(" cannot be found. Check parameter passed.")},
        {missingFile,
            QStringLiteral("The file ") + missingFile
                + QStringLiteral(" cannot be found. Check parameter passed.")},
    };
    for (const auto& c : cases) {
        scriptedPrompts().clear();
        EndRecorder end;
        OpenInBrowser(c.target);
        EXPECT_EQ(end.calls(), 1);
        EXPECT_EQ(scriptedPrompts().shownTexts(), QStringList{c.message});
    }
}

TEST(OutsidePrograms, OpenInBrowserStartsTheBrowserForAWebAddress)
{
    EndRecorder end;
    session().DefaultBrowser = QStringLiteral("/bin/true ");
    session().DefaultBrowserFound = true;
    OpenInBrowser(QStringLiteral("http://example.org/gps.htm?txtLat=42&txtLong=-73&txtZoom=17"));
    EXPECT_EQ(end.calls(), 0);
    EXPECT_TRUE(scriptedPrompts().shown().isEmpty());
}

TEST(OutsidePrograms, OpenLinkThatFailsSaysSo)
{
    EXPECT_FALSE(OpenLink(QString()));
    EXPECT_EQ(scriptedPrompts().shownTexts(), QStringList{QStringLiteral("Error Opening Link to \n\n")});
}
