#include "export/document_export.h"

#include "export/document_text.h"
#include "platform/file_system.h"
#include "support/printing.h"
#include "support/random_transcript.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>

using namespace sorvanta;

namespace {

using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;

// A line each, with what fonts, directions and XML make of it.
const QString scripts = u"Hello office affluent waffle, — “quoted” naïve café <b> & 'x' ]]> \"\n"
                        "\ttabbed\ttext  with   blanks \n"
                        "\n"
                        "हिन्दी: नमस्ते दुनिया, क्षत्रिय ज्ञान किताब शक्ति\n"
                        "中文：你好，世界。这是一个测试。\n"
                        "日本語：こんにちは世界。カタカナ。\n"
                        "한국어: 안녕하세요 세계. 조합 한글\n"
                        "Emoji: 😀 👨‍👩‍👧‍👦 🇩🇪 👍🏽 ❤️ ✅ 🎉 1️⃣ 😀😀\n"
                        "ไทย: สวัสดีชาวโลก Ελληνικά Русский tiếng Việt"_qs;
const QString fromRightToLeft = u"العربية: مرحبا بالعالم، هذا نص طويل للتجربة 123 والله\n"
                                "שלום עולם, זהו טקסט בעברית (כולל סוגריים) 42"_qs;

QString withoutBlanks(QString text)
{
    text.removeIf([](QChar unit) { return unit.isSpace() || unit == u'\u200B'; });
    return text;
}

/// A document in a file, and what programs of others say of it.
class Document {
public:
    Document(ExportFormat format, const QString &text)
        : m_path(m_folder.filePath(u"document."_qs + fileExtension(format)))
        , m_bytes(renderDocument(format, text))
    {
        writeFileAtomically(m_path, m_bytes);
    }

    const QByteArray &bytes() const { return m_bytes; }

    /// What a program prints of the file. A warning or a failure fails the test.
    QByteArray said(const QString &program, const QStringList &before, const QStringList &behind = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(program, before + QStringList{m_path} + behind);
        if (!process.waitForFinished(120'000)) {
            ADD_FAILURE() << program.toStdString() << ": " << process.errorString().toStdString();
            return {};
        }
        EXPECT_EQ(process.exitCode(), 0) << program.toStdString();
        QByteArray complaints = process.readAllStandardError();
        // Said of the program's own build at every start.
        complaints.replace("warning: ICC support is not available\n", "");
        EXPECT_EQ(complaints.toStdString(), "") << program.toStdString();
        return process.readAllStandardOutput();
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    QString m_path;
    QByteArray m_bytes;
};

class Docx : public Document {
public:
    explicit Docx(const QString &text)
        : Document(ExportFormat::docx, text)
    {
    }

    QStringList paragraphs() const
    {
        const QJsonObject found =
            QJsonDocument::fromJson(said(u"/usr/bin/python3"_qs, {SORVANTA_DOCX_READER})).object();
        EXPECT_EQ(found["problems"], QJsonArray()) << QJsonDocument(found).toJson().toStdString();
        QStringList result;
        for (const QJsonValue paragraph : found["paragraphs"].toArray())
            result << paragraph.toString();
        return result;
    }

    /// The other reader's text: it makes one blank of several and leaves out what is empty.
    QString words() const
    {
        return QString::fromUtf8(said(u"pandoc"_qs, {"-f", "docx", "-t", "plain", "--wrap=none"})).simplified();
    }

    QByteArray part(const QString &name) const { return said(u"unzip"_qs, {"-p"}, {name}); }
};

class Pdf : public Document {
public:
    explicit Pdf(const QString &text)
        : Document(ExportFormat::pdf, text)
    {
    }

    QString text() const { return QString::fromUtf8(said(u"pdftotext"_qs, {}, {"-"})); }
    int pageCount() const
    {
        const QString information = QString::fromUtf8(said(u"pdfinfo"_qs, {}));
        EXPECT_TRUE(information.contains(QRegularExpression("Page size: +612 x 792 pts")));
        return QRegularExpression("Pages: +(\\d+)").match(information).captured(1).toInt();
    }
    /// The other reader draws all pages without a complaint.
    void expectThatItCanBeDrawn() const { said(u"mutool"_qs, {"draw", "-q", "-r", "20", "-o", "page%d.png"}); }
};

TEST(DocxDocuments, giveTheTextBackParagraphByParagraph)
{
    for (const QString &text : {scripts, fromRightToLeft, u"one line"_qs, u"a\n\n\nb\n"_qs, u"  \n "_qs}) {
        const Docx docx(text);
        EXPECT_EQ(docx.paragraphs(), text.split(u'\n'));
        EXPECT_EQ(docx.words(), text.simplified());
    }
}

TEST(DocxDocuments, giveRandomTextsBack)
{
    for (unsigned seed = 0; seed < 15; ++seed) {
        const QString text = RandomTranscript(seed).lines();
        QStringList expected = documentParagraphs(text);
        expected.replaceInStrings(QChar(QChar::LineSeparator), u"\n"_qs);
        EXPECT_EQ(Docx(text).paragraphs(), expected) << seed;
    }
}

TEST(DocxDocuments, standForAnEmptyTextWithOneEmptyParagraph)
{
    EXPECT_EQ(Docx(QString()).paragraphs(), QStringList{QString()});
}

TEST(DocxDocuments, areNotBrokenByWhatXmlCannotHold)
{
    QString text;
    for (char16_t unit = 0; unit < 0x20; ++unit)
        text += QString(u'<') + QChar(unit) + u'>';
    text += QString(QChar(0xD800)) + QChar(0xFFFF);
    EXPECT_EQ(Docx(text).paragraphs().join(u'\n').count(u"<"_qs), 32);
}

TEST(DocxDocuments, holdTabsAndLineBreaksAsElementsAndKeepBlanks)
{
    const QByteArray xml = Docx(u" a\tb\u2028c "_qs).part(u"word/document.xml"_qs);
    EXPECT_THAT(xml.toStdString(), HasSubstr("<w:r><w:t xml:space=\"preserve\"> a</w:t><w:tab/><w:t "
                                             "xml:space=\"preserve\">b</w:t><w:br/><w:t xml:space=\"preserve\">c "
                                             "</w:t></w:r>"));
}

TEST(DocxDocuments, setAParagraphFromRightToLeftIfItsFirstLetterIs)
{
    const QByteArray xml = Docx(u"Left שלום\n12 שלום right"_qs).part(u"word/document.xml"_qs);
    EXPECT_THAT(
        xml.toStdString(),
        HasSubstr("<w:p><w:r><w:t xml:space=\"preserve\">Left שלום</w:t></w:r></w:p><w:p><w:pPr><w:bidi/></w:pPr>"
                  "<w:r><w:rPr><w:rtl/></w:rPr><w:t xml:space=\"preserve\">12 שלום right</w:t></w:r></w:p>"));
}

TEST(DocxDocuments, haveLetterPagesAndTellNobodysName)
{
    const Docx docx(u"text"_qs);
    EXPECT_THAT(docx.part(u"word/document.xml"_qs).toStdString(), HasSubstr("<w:pgSz w:w=\"12240\" w:h=\"15840\"/>"));
    const QString names = QString::fromUtf8(docx.said(u"unzip"_qs, {"-Z1"}));
    EXPECT_EQ(names.split(u'\n', Qt::SkipEmptyParts),
              (QStringList{"[Content_Types].xml", "_rels/.rels", "word/document.xml", "word/_rels/document.xml.rels",
                           "word/styles.xml"}));
}

TEST(DocxDocuments, areTheSameForTheSameText)
{
    EXPECT_EQ(renderDocument(ExportFormat::docx, scripts), renderDocument(ExportFormat::docx, scripts));
}

TEST(DocxDocuments, holdATenHourTranscript)
{
    const QString text =
        (u"So what we are looking at here is the third chapter, and it is \"long\".\n"_qs).repeated(12'000);
    EXPECT_EQ(Docx(text).paragraphs(), text.split(u'\n'));
}

TEST(PdfDocuments, giveTheTextBackInAnyScript)
{
    const Pdf pdf(scripts);
    EXPECT_EQ(withoutBlanks(pdf.text()), withoutBlanks(scripts));
    EXPECT_EQ(pdf.pageCount(), 1);
    pdf.expectThatItCanBeDrawn();
}

TEST(PdfDocuments, giveTheCharactersBackOfTextFromRightToLeft)
{
    // A reader tells these lines in the order of their places, with marks of direction, and joined letters as one.
    const auto characters = [](const QString &text) {
        QString sorted = withoutBlanks(text.normalized(QString::NormalizationForm_KC));
        sorted.removeIf(
            [](QChar unit) { return unit.direction() >= QChar::DirLRE && unit.direction() != QChar::DirNSM; });
        std::ranges::sort(sorted);
        return sorted;
    };
    const Pdf pdf(fromRightToLeft);
    EXPECT_EQ(characters(pdf.text()), characters(fromRightToLeft));
    pdf.expectThatItCanBeDrawn();
}

TEST(PdfDocuments, setParagraphsFromRightToLeftAtTheRightMargin)
{
    const auto firstWordLeft = [](const QString &text) {
        const QString words = QString::fromUtf8(Pdf(text).said(u"pdftotext"_qs, {"-bbox"}, {"-"}));
        return QRegularExpression("xMin=\"([0-9.]+)\"").match(words).captured(1).toDouble();
    };
    EXPECT_LT(firstWordLeft(u"Left"_qs), 60);
    EXPECT_GT(firstWordLeft(u"שלום"_qs), 500);
    EXPECT_LT(firstWordLeft(u"Left שלום"_qs), 60);
}

TEST(PdfDocuments, embedAFontForEachScriptAndPicturesForEmoji)
{
    const Pdf pdf(scripts + u'\n' + fromRightToLeft);
    const QStringList fonts =
        QString::fromUtf8(pdf.said(u"pdffonts"_qs, {})).split(u'\n', Qt::SkipEmptyParts).sliced(2);
    for (const QString &font : fonts)
        EXPECT_TRUE(font.contains(QRegularExpression(" yes yes yes +\\d+ +\\d+$"))) << font.toStdString();
    for (const char *script : {"Devanagari", "CJK", "Thai"})
        EXPECT_FALSE(fonts.filter(script).isEmpty()) << script;
    const QString pictures = QString::fromUtf8(pdf.said(u"pdfimages"_qs, {"-list"}));
    EXPECT_GE(pictures.count(u" image "_qs), 8);
}

TEST(PdfDocuments, goOnToFurtherPagesAndCutNothingOff)
{
    QString text;
    for (int line = 0; line < 1'000; ++line)
        text += u"Line %1: the harbour wall stood where ships came in every morning, and nobody asked. "_qs.arg(line)
                + (line % 3 ? u"\n"_qs : u"And more, and yet more, so that the line is longer than the page.\n"_qs);
    const Pdf pdf(text);
    EXPECT_GT(pdf.pageCount(), 20);
    EXPECT_EQ(pdf.text().simplified(), text.simplified());
    pdf.expectThatItCanBeDrawn();
    QRegularExpressionMatchIterator words =
        QRegularExpression("xMin=\"([-0-9.]+)\" yMin=\"([-0-9.]+)\" xMax=\"([-0-9.]+)\" yMax=\"([-0-9.]+)\"")
            .globalMatch(QString::fromUtf8(pdf.said(u"pdftotext"_qs, {"-bbox"}, {"-"})));
    int count = 0;
    for (; words.hasNext(); ++count) {
        const QRegularExpressionMatch word = words.next();
        EXPECT_GE(word.captured(1).toDouble(), 50);
        EXPECT_GE(word.captured(2).toDouble(), 50);
        EXPECT_LE(word.captured(3).toDouble(), 612 - 50);
        EXPECT_LE(word.captured(4).toDouble(), 792 - 50);
    }
    EXPECT_EQ(count, text.simplified().count(u' ') + 1);
}

TEST(PdfDocuments, breakALineWithoutBlanksWhereverThePageEnds)
{
    for (const QString &text : {QString(60'000, u'x'), u"長"_qs.repeated(20'000), u"😀"_qs.repeated(700)}) {
        const Pdf pdf(text);
        EXPECT_EQ(withoutBlanks(pdf.text()), text) << text.first(2).toStdString();
        EXPECT_GT(pdf.pageCount(), 0);
    }
}

TEST(PdfDocuments, setALongParagraphAsOne)
{
    // It is laid out piece by piece; only its last line may be short.
    const QString text = u"word "_qs.repeated(3'000);
    const QString words = QString::fromUtf8(Pdf(text).said(u"pdftotext"_qs, {"-bbox"}, {"-"}));
    QMap<QString, int> wordsOfLine;
    int page = 0;
    for (const QString &line : words.split(u'\n')) {
        page += line.contains(u"<page "_qs);
        const QRegularExpressionMatch word = QRegularExpression("yMin=\"([0-9.]+)\"").match(line);
        if (word.hasMatch())
            ++wordsOfLine[u"%1 %2"_qs.arg(page, 3).arg(word.captured(1).toDouble(), 9)];
    }
    QList<int> counts = wordsOfLine.values();
    counts.removeLast();
    EXPECT_GT(counts.size(), 100);
    EXPECT_THAT(counts, Each(counts.first()));
}

TEST(PdfDocuments, keepEmptyParagraphsAsSpace)
{
    const auto lastWordTop = [](const QString &text) {
        const QString words = QString::fromUtf8(Pdf(text).said(u"pdftotext"_qs, {"-bbox"}, {"-"}));
        return words.mid(words.lastIndexOf(u"yMin=\""_qs) + 6).section(u'"', 0, 0).toDouble();
    };
    const double line = lastWordTop(u"a\nb"_qs) - lastWordTop(u"b"_qs);
    EXPECT_GT(line, 12);
    EXPECT_NEAR(lastWordTop(u"a\n\n\nb"_qs), lastWordTop(u"b"_qs) + 3 * line, 0.1);
    EXPECT_NEAR(lastWordTop(u"a\u2028b"_qs), lastWordTop(u"b"_qs) + line, 0.1);
}

TEST(PdfDocuments, areTheSameForTheSameTextAndTellNoTime)
{
    const Pdf pdf(scripts);
    EXPECT_EQ(pdf.bytes(), renderDocument(ExportFormat::pdf, scripts));
    EXPECT_THAT(pdf.said(u"pdfinfo"_qs, {}).toStdString(), testing::Not(HasSubstr("Date")));
}

TEST(PdfDocuments, haveOnePageForAnEmptyText)
{
    for (const QString &text : {u""_qs, u" \n "_qs}) {
        const Pdf pdf(text);
        EXPECT_EQ(pdf.pageCount(), 1);
        EXPECT_THAT(withoutBlanks(pdf.text()).toStdString(), IsEmpty());
        pdf.expectThatItCanBeDrawn();
    }
}

TEST(PdfDocuments, leaveOutControlCharactersAndMarkHalfCharacters)
{
    QString text = u"begin "_qs;
    for (char16_t unit = 0; unit < 9; ++unit)
        text += QChar(unit);
    text += u"end "_qs + QChar(0xD800) + u" last"_qs;
    EXPECT_EQ(withoutBlanks(Pdf(text).text()), u"beginend\uFFFDlast"_qs);
}

TEST(PdfDocuments, areReadWithoutAComplaintWhateverTheyHold)
{
    for (unsigned seed = 0; seed < 25; ++seed) {
        const Pdf pdf(RandomTranscript(seed).lines());
        EXPECT_GE(pdf.pageCount(), 1) << seed;
        pdf.text();
        pdf.expectThatItCanBeDrawn();
    }
}

} // namespace
