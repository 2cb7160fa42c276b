#pragma once

#include "CaseScreenFixture.h"
#include "documents/PrintState.h"
#include "documents/screens/Editor.h"

#include <QTemporaryDir>

namespace pvardo::test {

// A case screen whose printing goes into PDF files in a temporary folder,
// with the print settings and the report window fresh for each test.
class CasePrintingTest : public CaseScreenTest
{
protected:
    void SetUp() override
    {
        CaseScreenTest::SetUp();
        documents::resetPrintState();
        ASSERT_TRUE(pdfFolder.isValid());
        documents::Editor::setPdfFolder(pdfFolder.path());
        documents::Editor::instance().clearBuffers();
        session().TempFolder = pdfFolder.path();
    }

    void TearDown() override
    {
        documents::Editor::instance().hide();
        documents::Editor::instance().clearBuffers();
        documents::resetPrintState();
        CaseScreenTest::TearDown();
    }

    QTemporaryDir pdfFolder;
};

} // namespace pvardo::test
