#include "admin/screens/AdminScreens.h"

#include "admin/UserLogon.h"
#include "admin/screens/UserMgr.h"
#include "admin/screens/hasVARDO.h"
#include "common/PromptService.h"
#include "common/Session.h"

namespace pvardo::admin {

void showUserManager(QWidget* parent)
{
    UserMgr screen(session().ProgramFolder, parent);
    if (!screen.loaded()) {
        showMessage(
            screen.loadError(), QStringLiteral(" User list"), PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    prompts().exec(screen);
}

void showChangePassword(QWidget* parent)
{
    UserMgr screen(session().ProgramFolder, parent);
    if (!screen.loaded()) {
        showMessage(
            screen.loadError(), QStringLiteral(" User list"), PromptButtons::Ok, PromptIcon::Exclamation);
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

bool askShareParcelStore(QWidget* parent)
{
    hasVARDO dialog(parent);
    return prompts().exec(dialog) == QDialog::Accepted;
}

} // namespace pvardo::admin
