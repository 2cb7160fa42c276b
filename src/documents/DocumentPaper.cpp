#include "documents/DocumentPaper.h"

#include <QTextDocument>
#include <QVariant>

namespace pvardo::documents {

namespace {

constexpr const char* paperProperty = "pvardoPaper";

} // namespace

DocumentPaper documentPaper(const QTextDocument& document)
{
    const QVariant value = document.property(paperProperty);
    if (!value.isValid()) {
        return {};
    }
    const QList<QVariant> list = value.toList();
    if (list.size() != 6) {
        return {};
    }
    DocumentPaper paper;
    paper.widthTwips = list.at(0).toInt();
    paper.heightTwips = list.at(1).toInt();
    paper.leftTwips = list.at(2).toInt();
    paper.topTwips = list.at(3).toInt();
    paper.rightTwips = list.at(4).toInt();
    paper.bottomTwips = list.at(5).toInt();
    paper.stated = true;
    return paper;
}

void setDocumentPaper(QTextDocument& document, const DocumentPaper& paper)
{
    if (!paper.stated) {
        document.setProperty(paperProperty, QVariant());
        return;
    }
    document.setProperty(paperProperty, QList<QVariant>{paper.widthTwips, paper.heightTwips, paper.leftTwips,
                                                         paper.topTwips, paper.rightTwips, paper.bottomTwips});
}

} // namespace pvardo::documents
