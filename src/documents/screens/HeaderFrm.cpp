#include "documents/screens/HeaderFrm.h"

#include "common/PromptService.h"
#include "common/Session.h"
#include "common/TextFiles.h"
#include "documents/RtfReader.h"
#include "documents/RtfWriter.h"
#include "documents/screens/FormatToolbar.h"
#include "ui/XPButton.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>
#include <QTextEdit>
#include <QVBoxLayout>

namespace pvardo::documents {

namespace {

const QString kTitle = QStringLiteral(" Define Header");

QLabel* pictureBox(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setFixedSize(160, 80);
    label->setFrameShape(QFrame::StyledPanel);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

HeaderFrm::HeaderFrm(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("HeaderFrm"));
    setWindowTitle(kTitle);
    resize(720, 520);
    auto* layout = new QVBoxLayout(this);

    auto* instructions
        = new QLabel(QStringLiteral("Create a header that you would like to show up on your reports"), this);
    // Where the pictures chosen below appear.
    auto* whereUsed = new QLabel(QStringLiteral("The logo prints where the header or a letter holds %lo (the header "
                                               "shipped with the program does); the signature where a letter holds "
                                               "%si (the shipped letters do, above the clerk's title)."),
        this);
    whereUsed->setObjectName(QStringLiteral("Label2"));
    whereUsed->setWordWrap(true);
    instructions->setObjectName(QStringLiteral("Label1"));
    layout->addWidget(instructions);
    layout->addWidget(whereUsed);

    m_text = new QTextEdit(this);
    m_text->setObjectName(QStringLiteral("RichTextBox1"));
    m_text->setAcceptRichText(true);
    QFont face(QStringLiteral("Courier New"));
    face.setPointSize(12);
    m_text->document()->setDefaultFont(face);
    m_toolbar = new FormatToolbar(*m_text, this);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_text, 1);

    auto* pictures = new QGridLayout;
    m_logo = pictureBox("picLogo", this);
    m_signature = pictureBox("picSig", this);
    auto* logo = new ui::XPButton(QStringLiteral("iLogo"), QStringLiteral(" Logo..."),
        QStringLiteral(" Choose the logo picture of the letters "), this);
    auto* signature = new ui::XPButton(QStringLiteral("iSignature"), QStringLiteral(" Signature..."),
        QStringLiteral(" Choose the signature picture of the letters "), this);
    pictures->addWidget(m_logo, 0, 0);
    pictures->addWidget(logo, 1, 0);
    pictures->addWidget(m_signature, 0, 1);
    pictures->addWidget(signature, 1, 1);
    pictures->setColumnStretch(2, 1);
    layout->addLayout(pictures);
    connect(logo, &QPushButton::clicked, this, &HeaderFrm::chooseLogo);
    connect(signature, &QPushButton::clicked, this, &HeaderFrm::chooseSignature);

    auto* buttons = new QHBoxLayout;
    auto* save = new ui::XPButton(QStringLiteral("Command1"), QStringLiteral(" Save"),
        QStringLiteral(" Save the header for the reports "), this);
    auto* cancel = new ui::XPButton(QStringLiteral("Command2"), QStringLiteral("Cancel"), QString(), this);
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(save, &QPushButton::clicked, this, &HeaderFrm::Command1);
    connect(cancel, &QPushButton::clicked, this, &HeaderFrm::Command2);

    Loadheader();
    showPicture(logoPath(), m_logo);
    showPicture(signaturePath(), m_signature);
    m_toolbar->fillLists();
}

QString HeaderFrm::headerPath()
{
    return QDir(session().FormsFolder).filePath(QStringLiteral("gTitle.rtf"));
}

QString HeaderFrm::logoPath()
{
    return QDir(session().MasterDatabaseFolder).filePath(QStringLiteral("memos/logo.bmp"));
}

QString HeaderFrm::signaturePath()
{
    return QDir(session().MasterDatabaseFolder).filePath(QStringLiteral("memos/sig.bmp"));
}

void HeaderFrm::Loadheader()
{
    QFile file(headerPath());
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QByteArray bytes = file.readAll();
    const RtfReadResult read = readRtf(bytes, *m_text->document());
    if (read.notRtf) {
        m_text->setPlainText(decodeText(bytes));
    }
    session().ReportHeaderRtf = decodeText(bytes);
    m_text->moveCursor(QTextCursor::Start);
}

void HeaderFrm::Command1()
{
    const QByteArray rtf = writeRtf(*m_text->document());
    QString error;
    if (!QDir().mkpath(QFileInfo(headerPath()).absolutePath()) || !replaceFile(headerPath(), rtf, &error)) {
        showMessage(QStringLiteral("The header could not be saved to ")
                + QDir::toNativeSeparators(headerPath()) + QStringLiteral(": ") + error,
            kTitle, PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    session().ReportHeaderRtf = QString::fromUtf8(rtf);
    accept();
}

void HeaderFrm::Command2()
{
    reject();
}

void HeaderFrm::chooseLogo()
{
    choosePicture(logoPath(), m_logo);
}

void HeaderFrm::chooseSignature()
{
    choosePicture(signaturePath(), m_signature);
}

void HeaderFrm::choosePicture(const QString& target, QLabel* preview)
{
    QFileDialog dialog(this, QStringLiteral("Choose a Picture"), QDir::homePath());
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats()) {
        patterns << QStringLiteral("*.") + QString::fromLatin1(format);
    }
    dialog.setNameFilters({QStringLiteral("Pictures (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')'),
        QStringLiteral("All Files (*)")});
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (prompts().exec(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return;
    }
    const QString chosen = dialog.selectedFiles().constFirst();
    QFile file(chosen);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (QImage::fromData(bytes).isNull()) {
        showMessage(
            QDir::toNativeSeparators(chosen) + QStringLiteral(" is not a picture this program can read."),
            kTitle, PromptButtons::Ok, PromptIcon::Exclamation);
        return;
    }
    // The picture is kept as it came; the letters find it under its
    // usual name whatever its kind.
    QString error;
    if (!QDir().mkpath(QFileInfo(target).absolutePath()) || !replaceFile(target, bytes, &error)) {
        showMessage(QStringLiteral("The picture could not be saved to ") + QDir::toNativeSeparators(target)
                + QStringLiteral(": ") + error,
            kTitle, PromptButtons::Ok, PromptIcon::Critical);
        return;
    }
    showPicture(target, preview);
}

void HeaderFrm::showPicture(const QString& path, QLabel* preview)
{
    const QImage image(path);
    if (image.isNull()) {
        preview->setPixmap(QPixmap());
        preview->setText(QStringLiteral("(none)"));
        return;
    }
    preview->setPixmap(QPixmap::fromImage(
        image.scaled(preview->size() - QSize(4, 4), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

} // namespace pvardo::documents
