#include "admin/screens/AdminScreens.h"

#include "admin/UserLogon.h"
#include "admin/screens/PrefFrm.h"
#include "admin/screens/UserMgr.h"
#include "admin/screens/hasVARDO.h"
#include "common/PromptService.h"
#include "common/Session.h"

namespace pvardo::admin {

namespace {

// Gives false, after telling the user, when the list cannot be worked on.
bool usable(const UserMgr& screen)
{
    if (!screen.loaded()) {
        showMessage(
            screen.loadError(), QStringLiteral(" User list"), PromptButtons::Ok, PromptIcon::Exclamation);
        return false;
    }
    if (!screen.unreadableLines().isEmpty() || !screen.readingNotes().isEmpty()) {
        QString text = QStringLiteral("The user list is damaged:");
        if (!screen.unreadableLines().isEmpty()) {
            text += QLatin1Char(' ') + screen.unreadableLines().join(QStringLiteral("; "))
                + QStringLiteral(".\n\nThese lines are left out when the list is written.");
        }
        if (!screen.readingNotes().isEmpty()) {
            text += QStringLiteral("\n\n") + screen.readingNotes().join(QStringLiteral(";\n"))
                + QStringLiteral(".");
        }
        showMessage(text, QStringLiteral(" User list"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
    return true;
}

} // namespace

void showUserManager(QWidget* parent)
{
    UserMgr screen(session().ProgramFolder, parent);
    if (!usable(screen)) {
        return;
    }
    prompts().exec(screen);
}

void showChangePassword(QWidget* parent)
{
    UserMgr screen(session().ProgramFolder, parent);
    if (!usable(screen)) {
        return;
    }
    const int row = session().UserIndex;
    if (row < 0 || row >= screen.rows().size()) {
        showMessage(QStringLiteral("Your entry is no longer in the user list; ask your administrator."),
            QStringLiteral(" Change Password"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    screen.editRow(row, true);
    if (!session().StopFlag) {
        screen.writeList();
    }
}

void showPreferences(QWidget* parent)
{
    PrefFrm screen(parent);
    prompts().exec(screen);
}

bool askShareParcelStore(QWidget* parent)
{
    hasVARDO dialog(parent);
    return prompts().exec(dialog) == QDialog::Accepted;
}

} // namespace pvardo::admin
