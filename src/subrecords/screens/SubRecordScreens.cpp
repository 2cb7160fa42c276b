#include "subrecords/screens/SubRecordScreens.h"

#include "cases/screens/ZPermits.h"
#include "documents/Merge.h"
#include "subrecords/screens/FeesFrm.h"
#include "subrecords/screens/ReceiptDlg.h"
#include "ui/NotAvailable.h"

#include <QHash>
#include <QPointer>

namespace pvardo::subrecords {

namespace {

QHash<QString, QPointer<SubRecordFrm>>& screens()
{
    static QHash<QString, QPointer<SubRecordFrm>> open;
    return open;
}

} // namespace

void openSubRecordScreen(const QString& screenName, cases::ZPermits& caseScreen)
{
    if (screenName == QLatin1String("receipt")) {
        openReceipt(caseReceipt(caseScreen), documents::ScreenCodes::Case, &caseScreen);
        return;
    }
    if (screenName != QLatin1String("feesfrm")) {
        ui::showNotAvailable(screenName);
        return;
    }
    QPointer<SubRecordFrm>& screen = screens()[screenName];
    if (screen && screen->caseScreen() != &caseScreen) {
        delete screen.data();
    }
    if (!screen) {
        screen = new FeesFrm(caseScreen);
        screen->move(caseScreen.subRecordPlace());
    }
    screen->show();
    screen->raise();
    screen->activateWindow();
    screen->activateScreen();
}

SubRecordFrm* subRecordScreen(const QString& screenName)
{
    return screens().value(screenName).data();
}

void closeSubRecordScreens()
{
    for (const QPointer<SubRecordFrm>& screen : std::as_const(screens())) {
        delete screen.data();
    }
    screens().clear();
}

} // namespace pvardo::subrecords
