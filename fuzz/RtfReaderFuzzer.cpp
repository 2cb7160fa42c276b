// libFuzzer target for the RTF reader: whatever the bytes, reading must end,
// without a crash, a sanitizer report or runaway memory, and leave a
// document that can be walked.
#include "documents/RtfReader.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextDocument>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication* application = new QGuiApplication(*argc, *argv);
    Q_UNUSED(application)
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    QTextDocument document;
    const pvardo::documents::RtfReadResult result = pvardo::documents::readRtf(bytes, document);
    // Walk what was read, as the placeholder search and the printer do.
    qsizetype characters = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        characters += block.text().size();
    }
    if (result.notRtf && !document.isEmpty()) {
        std::abort(); // a file that is not RTF leaves the document empty
    }
    // The text never outgrows the input: each byte gives at most one character
    // or the document's own paragraph marks.
    if (characters > qsizetype(size) + 1) {
        std::abort();
    }
    return 0;
}
