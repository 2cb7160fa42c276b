#include "admin/DemoInstallation.h"
#include "admin/UserList.h"
#include "admin/UserLogon.h"
#include "common/BoardMembers.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "store/Recordset.h"
#include "support/AdminTool.h"

#include <QDate>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pvardo;
using pvardo::test::AdminRun;
using pvardo::test::runAdmin;

namespace {

QStringList users(const QString& home, const QStringList& words)
{
    return QStringList{QStringLiteral("--home"), home, QStringLiteral("users")} + words;
}

QList<admin::UserEntry> onDisk(const QString& home)
{
    const auto list = admin::UserList::read(home + QStringLiteral("/Users.Set"));
    return list ? list->entries : QList<admin::UserEntry>();
}

} // namespace

TEST(UsersCommand, AddsListsChangesAndRemovesUsers)
{
    QTemporaryDir home;
    const QString h = home.path();
    // No list yet: listing says how to make one; adding makes it.
    AdminRun run = runAdmin(users(h, {QStringLiteral("list")}));
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(QLatin1String("users add NAME LEVEL"))) << run.err.toStdString();

    run = runAdmin(users(h,
                       {QStringLiteral("add"), QStringLiteral("ADMIN"), QStringLiteral("admin"),
                           QStringLiteral("--password-stdin")}),
        "Planning\n");
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    run = runAdmin(users(h,
                       {QStringLiteral("add"), QStringLiteral("Planner"), QStringLiteral("MEMBER"),
                           QStringLiteral("--password-stdin")}),
        "desk\r\n");
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    ASSERT_EQ(onDisk(h).size(), 2);
    EXPECT_EQ(onDisk(h).at(0).name, QStringLiteral("ADMIN"));
    EXPECT_EQ(onDisk(h).at(0).level, QStringLiteral("ADMIN"));
    EXPECT_TRUE(onDisk(h).at(0).accepts(QStringLiteral("planning")));
    EXPECT_FALSE(readTextLines(h + QStringLiteral("/Users.Set"))->join(QLatin1Char('\n')).contains(QLatin1String("lanning")));

    run = runAdmin(users(h, {QStringLiteral("list")}));
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, QStringLiteral("ADMIN\tADMIN\nPlanner\tMEMBER\n"));

    // Any spelling is kept, those the older scrambled list could not hold among them.
    run = runAdmin(users(h,
                       {QStringLiteral("add"), QStringLiteral("Clerk"), QStringLiteral("USER"),
                           QStringLiteral("--password-stdin")}),
        "w,x\n");
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    run = runAdmin(users(h,
                       {QStringLiteral("add"), QString::fromUtf8("Zo\u00eb O'Brien, Jr."), QStringLiteral("USER"),
                           QStringLiteral("--password-stdin")}),
        "caf\xc3\xa9\n");
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    ASSERT_EQ(onDisk(h).size(), 4);
    EXPECT_TRUE(onDisk(h).at(2).accepts(QStringLiteral("W,X")));
    EXPECT_EQ(onDisk(h).at(3).name, QString::fromUtf8("Zo\u00eb O'Brien, Jr."));
    EXPECT_TRUE(onDisk(h).at(3).accepts(QString::fromUtf8("CAF\u00c9")));
    run = runAdmin(users(h, {QStringLiteral("remove"), QStringLiteral("clerk")}));
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String("Removed Clerk."))) << run.err.toStdString();
    run = runAdmin(users(h, {QStringLiteral("remove"), QString::fromUtf8("ZO\u00cb O'BRIEN, JR.")}));
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_EQ(onDisk(h).size(), 2);

    // Names are compared in capitals.
    run = runAdmin(users(h,
                       {QStringLiteral("add"), QStringLiteral("PLANNER"), QStringLiteral("USER"),
                           QStringLiteral("--password-stdin")}),
        "x\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(QLatin1String("already exists")));

    run = runAdmin(
        users(h, {QStringLiteral("passwd"), QStringLiteral("planner"), QStringLiteral("--password-stdin")}),
        "newpass\n");
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String("Changed the password of "))) << run.err.toStdString();
    EXPECT_TRUE(onDisk(h).at(1).accepts(QStringLiteral("NEWPASS")));
    EXPECT_FALSE(onDisk(h).at(1).accepts(QStringLiteral("desk")));

    // The administrator stays.
    run = runAdmin(users(h, {QStringLiteral("remove"), QStringLiteral("admin")}));
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(onDisk(h).size(), 2);
    run = runAdmin(users(h, {QStringLiteral("remove"), QStringLiteral("PLANNER")}));
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_EQ(onDisk(h).size(), 1);

    // The list logs on the way the program does.
    resetSession();
    ASSERT_TRUE(admin::loadSessionUsers(h, nullptr));
    admin::ValidateUser(QStringLiteral("admin"), QStringLiteral("PLANNING"));
    EXPECT_TRUE(session().LoggedIn);
}

TEST(UsersCommand, RefusesBadInputAndKeepsTheList)
{
    QTemporaryDir home;
    const QString h = home.path();
    admin::UserList list;
    for (int i = 0; i < 20; ++i) {
        list.entries.append(admin::UserEntry{i == 0 ? QStringLiteral("ADMIN") : QStringLiteral("U%1").arg(i),
            QStringLiteral("pw"), i == 0 ? QStringLiteral("ADMIN") : QStringLiteral("MEMBER")});
    }
    ASSERT_TRUE(list.write(h + QStringLiteral("/Users.Set")));
    const QList<admin::UserEntry> stored = onDisk(h);
    ASSERT_EQ(stored.size(), 20);
    const struct
    {
        QStringList words;
        QByteArray input;
        int code;
    } cases[] = {
        // Twenty users is the most the list holds.
        {{QStringLiteral("add"), QStringLiteral("More"), QStringLiteral("USER"),
             QStringLiteral("--password-stdin")},
            "pw\n", 1},
        {{QStringLiteral("add"), QStringLiteral("Boss"), QStringLiteral("SUPERVISOR"),
             QStringLiteral("--password-stdin")},
            "pw\n", 2},
        {{QStringLiteral("passwd"), QStringLiteral("U3"), QStringLiteral("--password-stdin")}, "   \n", 1},
        {{QStringLiteral("passwd"), QStringLiteral("nobody"), QStringLiteral("--password-stdin")}, "pw\n", 1},
        // No terminal to ask on, and no --password-stdin.
        {{QStringLiteral("passwd"), QStringLiteral("U3")}, "pw\n", 1},
        {{QStringLiteral("rename"), QStringLiteral("ADMIN"), QStringLiteral("BOSS")}, {}, 2},
        {{}, {}, 2},
    };
    for (const auto& c : cases) {
        const AdminRun run = runAdmin(users(h, c.words), c.input);
        EXPECT_EQ(run.code, c.code) << c.words.join(QLatin1Char(' ')).toStdString() << run.err.toStdString();
        EXPECT_EQ(onDisk(h), stored) << c.words.join(QLatin1Char(' ')).toStdString();
    }

    // A damaged list is never rewritten: its unreadable lines would be lost.
    ASSERT_TRUE(replaceFile(h + QStringLiteral("/Users.Set"), "2\nab,cd,ef\nbroken,line\n"));
    const AdminRun run = runAdmin(users(h, {QStringLiteral("remove"), QStringLiteral("ab")}));
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains(QLatin1String("damaged"))) << run.err.toStdString();
    EXPECT_TRUE(readTextLines(h + QStringLiteral("/Users.Set"))->contains(QStringLiteral("broken,line")));
}

TEST(DemoInstallation, MakesATownWithCasesParcelsAndAMonthOfMeetings)
{
    QTemporaryDir dir;
    const QString home = dir.filePath(QStringLiteral("demo"));
    AdminRun run
        = runAdmin({QStringLiteral("--home"), home, QStringLiteral("init"), QStringLiteral("--demo")});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QLatin1String("Log on as ADMIN with the password PLANNING")));
    const QString databases = home + QStringLiteral("/databases");

    const auto settings = readTextLines(home + QStringLiteral("/PVardo.ini"));
    ASSERT_TRUE(settings.has_value());
    ASSERT_EQ(settings->size(), 14);
    EXPECT_FALSE(settings->at(1).isEmpty());
    for (const char* list : {"zpt.txt", "zpu.txt", "zps.txt", "zpz.txt"}) {
        const auto lines = readTextLines(databases + QLatin1Char('/') + QLatin1String(list));
        ASSERT_TRUE(lines.has_value()) << list;
        EXPECT_GE(lines->size(), 4) << list;
    }
    EXPECT_GE(BoardMembers::read(databases).size(), 3);

    store::StoreStatus status;
    auto cases = store::openRecordsetAt(databases + QStringLiteral("/pbproj.db"),
        QStringLiteral("Select * from PBPROJ order by PBCASE"), &status);
    ASSERT_TRUE(cases) << status.description.toStdString();
    EXPECT_GE(cases->RecordCount(), 24);
    auto parcels = store::openRecordsetAt(
        databases + QStringLiteral("/sbl.db"), QStringLiteral("Select * from SBL"), &status);
    ASSERT_TRUE(parcels) << status.description.toStdString();
    EXPECT_GE(parcels->RecordCount(), 20);
    // Every case's parcel is in the store, with the case in its trail.
    for (cases->MoveFirst(); !cases->Eof(); cases->MoveNext()) {
        const QString number = cases->text(QStringLiteral("PBCASE"));
        EXPECT_FALSE(cases->text(QStringLiteral("PBLOCN1")).isEmpty()) << number.toStdString();
        EXPECT_EQ(cases->text(QStringLiteral("BYUSER")), admin::DemoInstallation::demoUser());
    }
    parcels->MoveFirst();
    EXPECT_TRUE(parcels->text(QStringLiteral("HISTORICAL")).contains(QLatin1String("*Z")));

    auto meetings = store::openRecordsetAt(databases + QStringLiteral("/meeting.db"),
        QStringLiteral("Select * from MEETING order by [MJUL]"), &status);
    ASSERT_TRUE(meetings) << status.description.toStdString();
    int recurring = 0;
    int nearToday = 0;
    for (meetings->MoveFirst(); !meetings->Eof(); meetings->MoveNext()) {
        if (meetings->text(QStringLiteral("MFREQ")) == QLatin1String("R")) {
            ++recurring;
        } else if (qAbs(meetings->value(QStringLiteral("MDATE")).toDate().daysTo(QDate::currentDate()))
            <= 16) {
            ++nearToday;
        }
    }
    EXPECT_EQ(recurring, 2);
    EXPECT_GE(nearToday, 10);

    // AdminRun again: nothing is added to an installation that has cases.
    run = runAdmin({QStringLiteral("--home"), home, QStringLiteral("init"), QStringLiteral("--demo")});
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    cases->Requery();
    EXPECT_EQ(cases->RecordCount(), 36);
}
