#include "schedule/screens/SchedulerMenus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace pvardo::schedule {

namespace {

struct Entry
{
    const char* name;
    const char* caption; // empty for a separator
};

QMenu* addMenu(QMenuBar& bar, const char* name, const char* caption, std::initializer_list<Entry> entries)
{
    QMenu* menu = bar.addMenu(QString::fromUtf8(caption));
    menu->setObjectName(QLatin1String(name));
    menu->menuAction()->setObjectName(QLatin1String(name));
    for (const Entry& entry : entries) {
        if (!*entry.caption) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(QString::fromUtf8(entry.caption));
        action->setObjectName(QLatin1String(entry.name));
    }
    return menu;
}

} // namespace

void buildSchedulerMenus(QMenuBar& bar)
{
    addMenu(bar, "File", "&File",
        {{"planningb", "&Planning Board"}, {"runvardo", "&Vardo"}, {"maplookup", "Coordinates lookup.."},
            {"", ""}, {"Quit", "&Quit"}});
    addMenu(bar, "options", "&Options",
        {{"backr", "&Backup.."}, {"backupto", "Backup To.."}, {"repair", "&Repair Attempt.."}, {"", ""},
            {"hittheroad", "download.."}, {"remotein", "upload.."}, {"", ""},
            {"changepsw", "Change &Password"}, {"doappinfo", "Application Info"}});
    addMenu(bar, "help", "&Help",
        {{"dohelp", "Help.."}, {"hlpKeys", "&Keys.."}, {"contact", "Contact Brenlo.."},
            {"About", "&About.."}});
    addMenu(bar, "report", "&Admin",
        {{"dosbl", "SBL Repository"}, {"usermanage", "User Management"}, {"convert", "Convert DB"},
            {"checkupdates", "Check for updates.."}, {"defaults", "&Preferences Settings.."}, {"", ""},
            {"updateparcel", "Import Tax Parcels.."}, {"viewparcel", "View Imported Parcels"},
            {"syncSBL", "Synchronize SBL Repository"}});
    addMenu(bar, "medit", "Edit",
        {{"mcopy", "Copy"}, {"mpaste", "Paste"}, {"", ""}, {"loadp", "Obtain from File.."},
            {"savep", "Save to File.."}});
}

const QStringList& entriesCommandedFromOutside()
{
    static const QStringList names{
        QStringLiteral("maplookup"),
        QStringLiteral("backr"),
        QStringLiteral("backupto"),
        QStringLiteral("repair"),
        QStringLiteral("changepsw"),
        QStringLiteral("doappinfo"),
        QStringLiteral("dohelp"),
        QStringLiteral("contact"),
        QStringLiteral("About"),
        QStringLiteral("dosbl"),
        QStringLiteral("usermanage"),
        QStringLiteral("checkupdates"),
        QStringLiteral("defaults"),
        QStringLiteral("updateparcel"),
        QStringLiteral("viewparcel"),
        QStringLiteral("syncSBL"),
    };
    return names;
}

} // namespace pvardo::schedule
