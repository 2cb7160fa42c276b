#include "documents/screens/LabelFrm.h"

#include "common/NumberText.h"
#include "common/PromptService.h"
#include "common/Session.h"
#include "documents/PrintState.h"
#include "documents/printer/DefaultPrinter.h"
#include "documents/screens/Editor.h"
#include "documents/screens/Letters.h"
#include "ui/TaskFrm.h"
#include "ui/XPButton.h"

#include <QDir>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpressionValidator>
#include <QTextDocument>
#include <QVBoxLayout>

namespace pvardo::documents {

namespace {

// The picture box is as large as the pictures the program draws.
constexpr int pictureWidth = 204;
constexpr int pictureHeight = 276;

QString offsetText(double inches)
{
    return QString::number(inches, 'g', 4);
}

} // namespace

LabelSheetPicture::LabelSheetPicture(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("Picture1"));
    setFixedSize(pictureWidth, pictureHeight);
    setCursor(Qt::PointingHandCursor);
    setToolTip(QStringLiteral("Click the label to start printing at"));
}

void LabelSheetPicture::setSheet(const LabelSheet& sheet, const QPixmap& picture)
{
    m_sheet = sheet;
    m_picture = picture;
    update();
}

void LabelSheetPicture::markCell(int column, int row)
{
    m_column = column;
    m_row = row;
    update();
}

void LabelSheetPicture::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (!m_picture.isNull()) {
        painter.drawPixmap(rect(), m_picture);
    }
    // The start cell, where the sheet's cells lie in the picture.
    const qreal cellWidth = qreal(width()) / m_sheet.across;
    const qreal cellHeight = (height() - qreal(labelPictureBandTwips) / 15) / m_sheet.down;
    if (m_column >= 1 && m_column <= m_sheet.across && m_row >= 1 && m_row <= m_sheet.down) {
        const QRectF cell((m_column - 1) * cellWidth, (m_row - 1) * cellHeight, cellWidth, cellHeight);
        painter.fillRect(cell.adjusted(1, 1, -1, -1), QColor(0x1e, 0x6f, 0xd9, 110));
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void LabelSheetPicture::mousePressEvent(QMouseEvent* event)
{
    if (!m_takesClicks || event->button() != Qt::LeftButton) {
        return;
    }
    const QPoint cell = labelCellAt(m_sheet, event->position(), width(), height());
    markCell(cell.x(), cell.y());
    emit cellPicked(cell.x(), cell.y());
}

LabelFrm::LabelFrm(QWidget* parent)
    : QDialog(parent)
    , m_folder(labelsFolder(session().ProgramFolder))
{
    setObjectName(QStringLiteral("LabelFrm"));
    setWindowTitle(QStringLiteral(" Labels"));
    LabelRunState& state = labelState();

    auto* layout = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    layout->addLayout(left, 1);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("List1"));
    m_list->setMinimumWidth(340);
    left->addWidget(m_list, 1);
    m_description = new QLabel(this);
    m_description->setObjectName(QStringLiteral("Label1"));
    m_description->setMinimumHeight(36);
    left->addWidget(m_description);

    const QRegularExpression digits(QStringLiteral("[0-9]*"));
    const QRegularExpression decimals(QStringLiteral("[0-9.]*"));
    auto box = [this](const char* name, const QRegularExpression& allowed) {
        auto* edit = new QLineEdit(this);
        edit->setObjectName(QString::fromLatin1(name));
        edit->setValidator(new QRegularExpressionValidator(allowed, edit));
        edit->setMaximumWidth(70);
        return edit;
    };

    auto* position = new QGroupBox(QStringLiteral(" Label Position "), this);
    auto* positionForm = new QFormLayout(position);
    m_column = box("Text1", digits);
    m_row = box("Text2", digits);
    positionForm->addRow(QStringLiteral("Col:"), m_column);
    positionForm->addRow(QStringLiteral("Row:"), m_row);
    left->addWidget(position);

    auto* offset = new QGroupBox(QStringLiteral(" Offset "), this);
    auto* offsetForm = new QFormLayout(offset);
    m_top = box("Text4", decimals);
    m_left = box("Text3", decimals);
    offsetForm->addRow(QStringLiteral("Top:"), m_top);
    offsetForm->addRow(QStringLiteral("Left:"), m_left);
    left->addWidget(offset);
    for (QLineEdit* edit : {m_top, m_left}) {
        connect(
            edit, &QLineEdit::editingFinished, edit, [edit] { edit->setText(checkMargins(edit->text())); });
    }

    auto* right = new QVBoxLayout;
    layout->addLayout(right);
    m_picture = new LabelSheetPicture(this);
    right->addWidget(m_picture);
    auto* print = new ui::XPButton(QStringLiteral("command3"), QStringLiteral(" Print"), QString(), this);
    auto* cancel = new ui::XPButton(QStringLiteral("command2"), QStringLiteral(" Cancel"), QString(), this);
    print->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(print);
    buttons->addWidget(cancel);
    right->addStretch();
    right->addLayout(buttons);
    connect(print, &QPushButton::clicked, this, &LabelFrm::command3);
    connect(cancel, &QPushButton::clicked, this, &LabelFrm::command2);

    session().StopFlag = true;
    const LabelCatalog catalog = readLabelCatalog(m_folder);
    if (!catalog.readable) {
        showMessage(
            labelCatalogMessage(), QStringLiteral(" Labels"), PromptButtons::Ok, PromptIcon::Exclamation);
    }
    m_entries = catalog.sheets;
    for (const LabelSheetEntry& entry : m_entries) {
        m_list->addItem(entry.caption);
    }

    // Single labels go on where the last one stopped; a run of labels starts
    // at the first cell unless a click on the sheet says otherwise.
    if (state.single) {
        m_column->setText(QString::number(state.nextColumn));
        m_row->setText(QString::number(state.nextRow));
    } else {
        m_column->setText(QStringLiteral("1"));
        m_row->setText(QStringLiteral("1"));
    }
    m_picture->setTakesClicks(!state.single);
    connect(m_picture, &LabelSheetPicture::cellPicked, this, &LabelFrm::pickCell);
    connect(m_list, &QListWidget::currentRowChanged, this, &LabelFrm::chooseSheet);
    m_list->setCurrentRow(0);
    m_picture->markCell(LeadingWholeNumber(m_column->text()), LeadingWholeNumber(m_row->text()));
}

QString LabelFrm::checkMargins(const QString& value)
{
    const double inches = LeadingNumber(value);
    if (inches < 0.4) {
        return QStringLiteral("0.4");
    }
    if (inches > 3) {
        return QStringLiteral("3");
    }
    return value.trimmed();
}

void LabelFrm::chooseSheet(int index)
{
    if (index < 0 || index >= m_entries.size()) {
        return;
    }
    m_sheet = readLabelSheet(QDir(m_folder).filePath(m_entries.at(index).fileName));
    QPixmap picture;
    if (const QString path = labelPicturePath(m_folder, m_sheet); !path.isEmpty()) {
        picture.load(path);
    }
    m_picture->setSheet(m_sheet, picture);
    m_description->setText(describeLabelSheet(m_sheet));
    m_top->setText(offsetText(m_sheet.topOffset));
    m_left->setText(offsetText(m_sheet.leftOffset));
}

void LabelFrm::pickCell(int column, int row)
{
    m_column->setText(QString::number(column));
    m_row->setText(QString::number(row));
}

void LabelFrm::command3()
{
    LabelRunState& state = labelState();
    state.running = true;
    session().StopFlag = false;
    state.sheet = m_sheet;
    state.nextRow = LeadingWholeNumber(m_row->text());
    state.nextColumn = LeadingWholeNumber(m_column->text());
    state.topOffset = LeadingNumber(m_top->text());
    state.leftOffset = LeadingNumber(m_left->text());
    accept();
}

void LabelFrm::command2()
{
    session().StopFlag = true;
    reject();
}

bool chooseLabelSheet(QWidget* parent)
{
    printState().templateName = labelTemplateName();
    LabelFrm dialog(parent);
    return prompts().exec(dialog) == QDialog::Accepted && !session().StopFlag;
}

bool printMailingLabels(const QList<Addressee>& addressees, QWidget* parent)
{
    return chooseLabelSheet(parent) && printLabelRun(addressees);
}

bool printLabelRun(const QList<Addressee>& addressees)
{
    LabelRunState& state = labelState();
    ui::TaskFrm::open(QStringLiteral("Printing to default printer..."));
    QTextDocument labelTemplate;
    loadLabelTemplate(labelTemplate, session().ProgramFolder);
    // Named as the labels were asked for ("Label for Mailing 24-017").
    const QString caption = printState().reportCaption.trimmed();
    const QString title = caseReportTitle(caption.isEmpty() ? QStringLiteral("Labels") : caption);
    const PrinterOutcome outcome = printOnDefaultPrinter(
        [&](QPagedPaintDevice& device) { return PrintLabels(labelTemplate, addressees, state, device); },
        Editor::unusedPdfPath(title), title);
    state.running = false;
    ui::TaskFrm::close();
    if (!Editor::tellPrintOutcome(outcome, QStringLiteral("The labels were"))) {
        return false;
    }
    return true;
}

} // namespace pvardo::documents
