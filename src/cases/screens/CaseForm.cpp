#include "cases/screens/CaseForm.h"

#include "cases/CaseQuery.h"
#include "cases/CaseStatus.h"
#include "common/Clock.h"
#include "common/DateText.h"
#include "common/Session.h"
#include "store/Recordset.h"
#include "ui/DateInput.h"
#include "ui/RecordMode.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QValidator>

namespace pvardo::cases {

namespace {

bool g_fileDateMarked = false;
QDate g_markedDate; // the filing date the clerk last set

constexpr int SectionBox = 2;

} // namespace

bool CaseForm::fileDateMarked()
{
    return g_fileDateMarked;
}

void CaseForm::clearFileDateMark()
{
    g_fileDateMarked = false;
    g_markedDate = QDate();
}

CaseForm::CaseForm(const store::ColumnMap& map, QObject* parent)
    : QObject(parent)
    , m_map(map)
{
    for (int place = 1; place <= map.count(); ++place) {
        const auto& entry = map.place(place);
        if (entry.box > 0) {
            m_longest.insert(entry.box, entry.longest);
        }
    }
}

QWidget* CaseForm::makeBox(int number, QWidget* parent, bool multiLine)
{
    QWidget* input = nullptr;
    const int longest = m_longest.value(number, store::ColumnMap::NoLimit);
    if (multiLine) {
        auto* text = new QPlainTextEdit(parent);
        text->setTabChangesFocus(true);
        text->setMinimumHeight(54);
        input = text;
    } else {
        auto* line = new QLineEdit(parent);
        if (longest > 0 && longest != store::ColumnMap::NoLimit) {
            // The section box holds the subsection after a point too.
            line->setMaxLength(number == SectionBox ? longest + 5 : longest);
        }
        input = line;
    }
    input->setObjectName(QStringLiteral("Text1_%1").arg(number));
    m_boxes.insert(number, input);
    return input;
}

namespace {

class ItemsOnly : public QValidator
{
public:
    explicit ItemsOnly(QComboBox* list)
        : QValidator(list)
        , m_list(list)
    {
    }

    State validate(QString& input, int&) const override
    {
        const QString placeholder = CaseStatus::placeholder();
        if (input.isEmpty() || input == placeholder || m_list->findText(input, Qt::MatchExactly) >= 0) {
            return Acceptable;
        }
        if (placeholder.startsWith(input) || !matches(input).isEmpty()) {
            return Intermediate;
        }
        return Invalid;
    }

    void fixup(QString& input) const override
    {
        const QStringList found = matches(input);
        input = found.size() == 1 ? found.constFirst() : CaseStatus::placeholder();
    }

private:
    QStringList matches(const QString& start) const
    {
        QStringList found;
        for (int i = 0; i < m_list->count(); ++i) {
            if (m_list->itemText(i).startsWith(start, Qt::CaseInsensitive)) {
                found << m_list->itemText(i);
            }
        }
        return found;
    }

    QComboBox* m_list;
};

} // namespace

void CaseForm::keepToItems(QComboBox* list)
{
    list->setValidator(new ItemsOnly(list));
}

QComboBox* CaseForm::makeList(
    const QString& objectName, const QString& column, const QStringList& items, QWidget* parent)
{
    auto* list = new QComboBox(parent);
    list->setObjectName(objectName);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->addItems(items);
    list->setEditText(CaseStatus::placeholder());
    list->setMinimumContentsLength(14);
    if (!column.isEmpty()) {
        m_listColumns.insert(objectName, column);
        for (int place = 1; place <= m_map.count(); ++place) {
            if (m_map.place(place).name == column
                && m_map.place(place).longest != store::ColumnMap::NoLimit) {
                list->lineEdit()->setMaxLength(std::max<int>(m_map.place(place).longest, 8));
            }
        }
    }
    m_lists.insert(objectName, list);
    return list;
}

QLabel* CaseForm::makeCaption(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

QCheckBox* CaseForm::makeCheck(
    const QString& objectName, const QString& caption, const QString& column, QWidget* parent)
{
    auto* check = new QCheckBox(caption, parent);
    check->setObjectName(objectName);
    m_checks.insert(column, check);
    return check;
}

QWidget* CaseForm::makeSource(const QString& name, const QString& column, QWidget* parent)
{
    auto* holder = new QWidget(parent);
    holder->setObjectName(QStringLiteral("fra") + name);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* publicButton = new QRadioButton(QStringLiteral("Public"), holder);
    publicButton->setObjectName(QStringLiteral("opt%1Public").arg(name));
    auto* privateButton = new QRadioButton(QStringLiteral("Private"), holder);
    privateButton->setObjectName(QStringLiteral("opt%1Private").arg(name));
    auto* group = new QButtonGroup(holder);
    group->addButton(publicButton);
    group->addButton(privateButton);
    publicButton->setChecked(true);
    layout->addWidget(publicButton);
    layout->addWidget(privateButton);
    layout->addStretch();
    m_public.insert(column, publicButton);
    m_private.insert(column, privateButton);
    return holder;
}

ui::DateInput* CaseForm::makeFileDate(QWidget* parent)
{
    m_date = new ui::DateInput(todaysDate(), parent);
    m_date->setObjectName(QStringLiteral("DTPicker3"));
    connect(m_date, &ui::DateInput::dateChanged, this, [this](const QDate& date) {
        if (m_filling) {
            return;
        }
        // The date the clerk set is the one later searches carry; emptying
        // the input (only a search allows that) takes the mark away.
        g_fileDateMarked = date.isValid();
        g_markedDate = date;
        if (date.isValid()) {
            m_fileDateText = date.toString(QStringLiteral("MM/dd/yyyy"));
        }
        showDateMark();
    });
    return m_date;
}

QLabel* CaseForm::makeFileDateMark(QWidget* parent)
{
    m_dateMark = new QLabel(parent);
    m_dateMark->setObjectName(QStringLiteral("lblFileDateMark"));
    m_dateMark->setStyleSheet(QStringLiteral("QLabel { color: #1f4e99; }"));
    m_dateMark->hide();
    return m_dateMark;
}

void CaseForm::setSearching(bool searching)
{
    m_searching = searching;
    if (m_date) {
        // A search starts from an empty date, or from the date the clerk last
        // set while the mark is on: the input shows what is searched.
        m_date->setEmptyAllowed(searching);
        if (searching) {
            m_filling = true;
            m_date->setDate(g_fileDateMarked ? g_markedDate : QDate());
            m_filling = false;
        }
    }
    showDateMark();
}

void CaseForm::showDateMark()
{
    if (!m_dateMark) {
        return;
    }
    // Once the filing date was changed in this run, every search carries it;
    // the clerk is told so, or a search that finds nothing is a puzzle.
    const bool shown = m_searching && g_fileDateMarked && m_date && m_date->date().isValid();
    m_dateMark->setVisible(shown);
    m_dateMark->setText(shown ? QStringLiteral("Searching also by filing date ")
                + m_date->date().toString(QStringLiteral("MM/dd/yyyy"))
                              : QString());
}

QString CaseForm::boxText(int number) const
{
    QWidget* input = m_boxes.value(number);
    if (auto* line = qobject_cast<QLineEdit*>(input)) {
        return line->text();
    }
    if (auto* text = qobject_cast<QPlainTextEdit*>(input)) {
        return text->toPlainText();
    }
    return {};
}

void CaseForm::setBoxText(int number, const QString& text)
{
    QWidget* input = m_boxes.value(number);
    if (auto* line = qobject_cast<QLineEdit*>(input)) {
        line->setText(text);
        line->setCursorPosition(0);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(input)) {
        plain->setPlainText(text);
    }
}

void CaseForm::showRow(const store::Recordset& row)
{
    m_filling = true;
    store::getdata(m_map, row, [this](int number, const QString& text) { setBoxText(number, text); });
    // The subsection rides behind the section after a point.
    const QString sud = row.text(QStringLiteral("SUD"));
    if (!sud.isEmpty() && sud != QLatin1String("0")) {
        setBoxText(SectionBox, boxText(SectionBox) + QLatin1Char('.') + sud);
    }
    const QDate filed = row.value(QStringLiteral("PBFILEDATE")).toDate();
    if (filed.isValid()) {
        m_fileDateText = FixDateText(filed.toString(QStringLiteral("MM/dd/yyyy")));
        if (m_date) {
            m_date->setDate(filed);
        }
    } else {
        m_fileDateText.clear();
    }
    for (auto it = m_listColumns.cbegin(); it != m_listColumns.cend(); ++it) {
        const QString stored = row.text(it.value());
        m_lists.value(it.key())->setEditText(stored.isEmpty() ? CaseStatus::placeholder() : stored);
    }
    if (QComboBox* status = m_lists.value(QStringLiteral("Combo10"))) {
        const QString letter = row.text(QStringLiteral("PBSTATUS")).trimmed();
        status->setEditText(letter.isEmpty() ? CaseStatus::placeholder() : CaseStatus::statusVerbose(letter));
    }
    for (auto it = m_checks.cbegin(); it != m_checks.cend(); ++it) {
        it.value()->setChecked(row.text(it.key()) == QLatin1String("1"));
    }
    for (auto it = m_private.cbegin(); it != m_private.cend(); ++it) {
        const bool isPrivate = row.text(it.key()) == QLatin1String("1");
        (isPrivate ? it.value() : m_public.value(it.key()))->setChecked(true);
    }
    m_filling = false;
}

void CaseForm::clear()
{
    m_filling = true;
    for (auto it = m_boxes.cbegin(); it != m_boxes.cend(); ++it) {
        setBoxText(it.key(), QString());
    }
    for (QComboBox* list : std::as_const(m_lists)) {
        list->setEditText(CaseStatus::placeholder());
    }
    for (QCheckBox* check : std::as_const(m_checks)) {
        check->setChecked(false);
    }
    for (QRadioButton* button : std::as_const(m_public)) {
        button->setChecked(true);
    }
    if (m_date) {
        m_date->setDate(todaysDate());
    }
    m_fileDateText = todaysDate().toString(QStringLiteral("MM/dd/yyyy"));
    if (m_void) {
        m_void->hide();
    }
    m_filling = false;
}

void CaseForm::blankFileDate()
{
    m_filling = true;
    if (m_date) {
        m_date->setDate(QDate());
    }
    m_fileDateText.clear();
    m_filling = false;
}

void CaseForm::setLocked(bool locked)
{
    for (QWidget* input : std::as_const(m_boxes)) {
        ui::setInputLocked(input, locked);
    }
    for (QComboBox* list : std::as_const(m_lists)) {
        if (list->objectName() != QLatin1String("Combo9")) {
            ui::setInputLocked(list, locked);
        }
    }
    for (QCheckBox* check : std::as_const(m_checks)) {
        ui::setInputLocked(check, locked);
    }
    for (auto it = m_public.cbegin(); it != m_public.cend(); ++it) {
        ui::setInputLocked(it.value(), locked);
        ui::setInputLocked(m_private.value(it.key()), locked);
    }
    ui::setInputLocked(m_date, locked);
    for (QWidget* input : std::as_const(m_lockables)) {
        ui::setInputLocked(input, locked);
    }
}

QPalette CaseForm::plainPalette() const
{
    QPalette palette = QApplication::palette();
    if (m_readOnlyLook) {
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    }
    return palette;
}

void CaseForm::setReadOnlyLook(bool readOnly)
{
    if (readOnly == m_readOnlyLook) {
        return;
    }
    const QColor before = plainPalette().color(QPalette::Base);
    m_readOnlyLook = readOnly;
    const QPalette plain = plainPalette();
    QList<QWidget*> inputs = m_boxes.values();
    inputs << m_date;
    for (QWidget* input : std::as_const(inputs)) {
        // A colour of its own (the parcel's flags on the case number) stays.
        if (input && input->palette().color(QPalette::Base) == before) {
            input->setPalette(plain);
        }
    }
}

CaseInputs CaseForm::inputs() const
{
    CaseInputs in;
    in.caseNumber = boxText(1);
    in.fileDate = m_fileDateText;
    in.statusText = m_lists.contains(QStringLiteral("Combo10"))
        ? m_lists.value(QStringLiteral("Combo10"))->currentText()
        : QString();
    for (int number = 2; number <= 6; ++number) {
        in.sbl.box(number) = boxText(number);
    }
    in.ownerName = boxText(12);
    in.siteLocation = boxText(7);
    auto isPrivate = [this](const char* column) {
        QRadioButton* button = m_private.value(QString::fromLatin1(column));
        return button && button->isChecked();
    };
    in.privateWater = isPrivate("PBFW");
    in.privateSewage = isPrivate("PBFS");
    in.privateElectric = isPrivate("PBFE");
    in.privateGas = isPrivate("PBFG");
    return in;
}

store::StoreStatus CaseForm::writeOwnColumns(store::Recordset& row) const
{
    for (auto it = m_listColumns.cbegin(); it != m_listColumns.cend(); ++it) {
        QString text = m_lists.value(it.key())->currentText().trimmed();
        if (text == CaseStatus::placeholder()) {
            text.clear();
        }
        int longest = store::ColumnMap::NoLimit;
        for (int place = 1; place <= m_map.count(); ++place) {
            if (m_map.place(place).name == it.value()) {
                longest = m_map.place(place).longest;
            }
        }
        const store::StoreStatus status = row.setValue(it.value(), store::ColumnMap::cut(text, longest));
        if (!status.ok()) {
            return status;
        }
    }
    for (auto it = m_checks.cbegin(); it != m_checks.cend(); ++it) {
        const store::StoreStatus status
            = row.setValue(it.key(), it.value()->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
        if (!status.ok()) {
            return status;
        }
    }
    return store::StoreStatus::success();
}

QList<QPair<QString, QString>> CaseForm::searchLists() const
{
    QList<QPair<QString, QString>> lists;
    for (const auto& [name, column] : CaseQuery::listColumns()) {
        if (QComboBox* list = m_lists.value(name)) {
            lists.append({column, list->currentText()});
        }
    }
    return lists;
}

bool CaseForm::searchesFileDate() const
{
    return g_fileDateMarked && m_date && m_date->date().isValid();
}

QDate CaseForm::fileDate() const
{
    return m_date ? m_date->date() : QDate();
}

} // namespace pvardo::cases
