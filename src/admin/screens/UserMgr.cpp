#include "admin/screens/UserMgr.h"

#include "admin/UserLogon.h"
#include "admin/screens/NewFrm.h"
#include "admin/screens/UserEdit.h"
#include "common/PromptService.h"
#include "common/Session.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>

namespace pvardo::admin {

QString UserMgr::passwordState(const UserEntry& row)
{
    return row.hasPassword() ? QStringLiteral("(set)") : QStringLiteral("(none: cannot log on)");
}

UserMgr::UserMgr(const QString& programFolder, QWidget* parent)
    : QDialog(parent)
    , m_programFolder(programFolder)
    , m_list(new QTreeWidget(this))
    , m_add(new QPushButton(QStringLiteral("&Add"), this))
    , m_remove(new QPushButton(QStringLiteral("&Remove"), this))
    , m_done(new QPushButton(QStringLiteral("&Done"), this))
    , m_cancel(new QPushButton(QStringLiteral("Cancel"), this))
    , m_edit(new QPushButton(QStringLiteral("&Edit"), this))
{
    setObjectName(QStringLiteral("UserMgr"));
    setWindowTitle(QStringLiteral("Authorized Users"));
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setHeaderLabels(
        {QStringLiteral(" User "), QStringLiteral(" Password "), QStringLiteral(" Access ")});
    m_list->setRootIsDecorated(false);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumSize(360, 220);
    m_list->header()->setSectionResizeMode(QHeaderView::Stretch);
    m_add->setObjectName(QStringLiteral("Command1"));
    m_add->setToolTip(QStringLiteral(" Add a new user"));
    m_remove->setObjectName(QStringLiteral("Command2"));
    m_remove->setToolTip(QStringLiteral(" Delete highlighted user"));
    m_done->setObjectName(QStringLiteral("Command3"));
    m_cancel->setObjectName(QStringLiteral("Command4"));
    m_edit->setObjectName(QStringLiteral("Command5"));

    auto* side = new QVBoxLayout;
    side->addWidget(m_add);
    side->addWidget(m_edit);
    side->addWidget(m_remove);
    side->addStretch();
    side->addWidget(m_done);
    side->addWidget(m_cancel);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(side);

    connect(m_add, &QPushButton::clicked, this, &UserMgr::Command1_Click);
    connect(m_remove, &QPushButton::clicked, this, &UserMgr::Command2_Click);
    connect(m_done, &QPushButton::clicked, this, &UserMgr::Command3_Click);
    connect(m_cancel, &QPushButton::clicked, this, &UserMgr::Command4_Click);
    connect(m_edit, &QPushButton::clicked, this, &UserMgr::Command5_Click);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &UserMgr::updateButtons);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &UserMgr::Command5_Click);

    // The file is read afresh: another administrator may have changed it.
    std::optional<UserList> users
        = UserList::read(usersFile(m_programFolder), &m_loadError, &m_unreadable, &m_notes);
    if (users) {
        m_loaded = true;
        m_rows = users->entries.mid(0, maxUsersOnScreen);
        m_beyondScreen = users->entries.mid(maxUsersOnScreen);
    } else {
        m_loadError = QStringLiteral("The user list cannot be read: ") + m_loadError;
    }
    fillList();
}

void UserMgr::fillList()
{
    m_list->clear();
    for (const UserEntry& row : std::as_const(m_rows)) {
        // Passwords are never shown, only whether the user has one.
        m_list->addTopLevelItem(new QTreeWidgetItem({row.name, passwordState(row), row.level}));
    }
    updateButtons();
}

int UserMgr::selectedRow() const
{
    const QList<QTreeWidgetItem*> selected = m_list->selectedItems();
    return selected.isEmpty() ? -1 : m_list->indexOfTopLevelItem(selected.first());
}

void UserMgr::updateButtons()
{
    const int row = selectedRow();
    bool removable = row >= 0;
    if (removable) {
        const UserEntry& entry = m_rows.at(row);
        removable = entry.level != UserLevels::admin() && entry.name.toUpper() != UserLevels::admin();
    }
    m_remove->setEnabled(removable);
    m_edit->setEnabled(row >= 0);
    m_add->setEnabled(m_rows.size() < maxUsersOnScreen);
}

void UserMgr::Command1_Click()
{
    if (m_rows.size() >= maxUsersOnScreen) {
        return;
    }
    NewFrm screen(m_rows, this);
    if (prompts().exec(screen) == QDialog::Accepted) {
        fillList();
        m_list->setCurrentItem(m_list->topLevelItem(m_list->topLevelItemCount() - 1));
    }
}

void UserMgr::Command2_Click()
{
    const int row = selectedRow();
    if (row < 0 || !m_remove->isEnabled()) {
        return;
    }
    m_rows.removeAt(row);
    fillList();
}

void UserMgr::editRow(int row, bool fromChangePassword)
{
    if (row < 0 || row >= m_rows.size()) {
        return;
    }
    UserEdit screen(m_rows.at(row), session().UserLevel, fromChangePassword, this);
    session().StopFlag = true;
    prompts().exec(screen);
    if (session().StopFlag) {
        return;
    }
    const UserEntry edited = screen.values();
    // A new name must not be one another row already has.
    for (qsizetype other = 0; other < m_rows.size(); ++other) {
        if (other != row && m_rows.at(other).name.toUpper() == edited.name.toUpper()) {
            showMessage(NewFrm::duplicateText(), NewFrm::duplicateTitle());
            return;
        }
    }
    m_rows[row] = edited;
}

void UserMgr::Command5_Click()
{
    const int row = selectedRow();
    editRow(row, false);
    fillList();
    if (row >= 0 && row < m_list->topLevelItemCount()) {
        m_list->setCurrentItem(m_list->topLevelItem(row));
    }
}

bool UserMgr::writeList()
{
    UserList users;
    users.entries = m_rows + m_beyondScreen;
    QString error;
    if (!users.write(usersFile(m_programFolder), &error)) {
        showMessage(QStringLiteral("The user list ") + QDir::toNativeSeparators(usersFile(m_programFolder))
                + QStringLiteral(" was not written, and is as it was: ") + error,
            QStringLiteral(" User list"), PromptButtons::Ok, PromptIcon::Exclamation);
        return false;
    }
    sessionUsers() = users;
    return true;
}

void UserMgr::Command3_Click()
{
    if (writeList()) {
        accept();
    }
}

void UserMgr::Command4_Click()
{
    reject();
}

} // namespace pvardo::admin
