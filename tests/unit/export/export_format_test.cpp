#include "export/export_format.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace sorvanta;

namespace {

struct Row {
    ExportFormat format;
    QString menuLabel;
    QString shortLabel;
    QString extension;
    bool isDocument;
};

/// In the order of every menu.
const std::vector<Row> rows = {
    {ExportFormat::txt, "TXT", "TXT", "txt", false},
    {ExportFormat::srt, "SRT", "SRT", "srt", false},
    {ExportFormat::vtt, "VTT", "VTT", "vtt", false},
    {ExportFormat::csv, "CSV", "CSV", "csv", false},
    {ExportFormat::docx, "DOCX", "DOCX", "docx", true},
    {ExportFormat::pdf, "PDF", "PDF", "pdf", true},
    {ExportFormat::markdown, "Markdown (.md)", "Markdown", "md", false},
    {ExportFormat::html, "HTML", "HTML", "html", false},
    {ExportFormat::json, "JSON", "JSON", "json", false},
};

class ExportFormatRow : public testing::TestWithParam<Row> { };

TEST_P(ExportFormatRow, hasItsLabelsItsExtensionAndItsKind)
{
    const auto &[format, menu, brief, extension, isDocumentFormat] = GetParam();
    EXPECT_EQ(menuLabel(format), menu);
    EXPECT_EQ(shortLabel(format), brief);
    EXPECT_EQ(fileExtension(format), extension);
    EXPECT_EQ(isDocument(format), isDocumentFormat);
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportFormatRow, testing::ValuesIn(rows),
                         [](const auto &row) { return row.param.extension.toStdString(); });

TEST(ExportFormats, standInTheOrderOfTheMenus)
{
    EXPECT_TRUE(std::ranges::equal(allExportFormats, rows, {}, {}, &Row::format));
    EXPECT_TRUE(std::ranges::is_sorted(allExportFormats));
}

} // namespace
