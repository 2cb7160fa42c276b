#include "app/screens/DashboardWiring.h"

#include "admin/screens/AdminScreens.h"
#include "app/screens/AboutScreen.h"
#include "app/screens/MaintenanceCommands.h"
#include "cases/CaseNumbering.h"
#include "cases/screens/ZPermits.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "documents/screens/NotepadFrm.h"
#include "parcels/ParcelService.h"
#include "parcels/screens/CCalc.h"
#include "parcels/screens/RollScreens.h"
#include "parcels/screens/SblFrm.h"
#include "schedule/screens/Scheduler.h"
#include "subrecords/screens/SubRecordScreens.h"

namespace pvardo::app {

std::function<QWidget*()> caseScreenFactory()
{
    return [] {
        auto* screen = new cases::ZPermits;
        screen->setSubRecordOpener(subrecords::openSubRecordScreen);
        return screen;
    };
}

void wireDashboard(schedule::Scheduler& dashboard)
{
    dashboard.setCaseScreenFactory(caseScreenFactory());
    dashboard.setMinutesOpener(
        [](const store::Recordset& meeting, const QDate& day) {
            documents::NotepadFrm::shared().openMinutes(meeting, day);
        });
    schedule::Scheduler* window = &dashboard;
    dashboard.setMenuCommand(QStringLiteral("About"), [window] {
        AboutScreen about(window);
        prompts().exec(about);
    });
    dashboard.setMenuCommand(QStringLiteral("usermanage"), [window] { admin::showUserManager(window); });
    dashboard.setMenuCommand(QStringLiteral("maplookup"), [window] { parcels::maplookup(window); });
    dashboard.setMenuCommand(QStringLiteral("dosbl"), [window] { parcels::showParcelBrowser(window); });
    dashboard.setMenuCommand(QStringLiteral("updateparcel"), [window] { parcels::updateparcel(window); });
    dashboard.setMenuCommand(QStringLiteral("viewparcel"), [window] { parcels::viewparcel(window); });
    dashboard.setMenuCommand(QStringLiteral("syncSBL"), [window] { parcels::syncSBL(window); });
    dashboard.setMenuCommand(QStringLiteral("defaults"), [window] {
        const QString before = session().DatabaseFolder;
        admin::showPreferences(window);
        // Moved to other databases: nothing may go on reading or writing the
        // old ones. The preferences closed the other screens before the
        // switch; what is kept for the next use goes, and the dashboard reads
        // the new folder at once.
        if (session().DatabaseFolder != before) {
            window->dropCaseScreen();
            parcels::releaseRoll();
            parcels::unloadMdb();
            cases::reloadCaseNumbering();
            window->reloadMonth();
        }
    });
    dashboard.setMenuCommand(QStringLiteral("changepsw"), [window] { admin::showChangePassword(window); });
    dashboard.setMenuCommand(QStringLiteral("repair"), [] { repairAttempt(); });
    dashboard.setMenuCommand(QStringLiteral("checkupdates"), [window] { checkUpdates(window); });
    dashboard.setMenuCommand(QStringLiteral("doappinfo"), [] { showApplicationInfo(); });
}

} // namespace pvardo::app
