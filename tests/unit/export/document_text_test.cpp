#include "export/document_text.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

struct Division {
    QString text;
    QStringList paragraphs;
};

class DocumentText : public testing::TestWithParam<Division> { };

TEST_P(DocumentText, becomesParagraphs)
{
    EXPECT_EQ(documentParagraphs(GetParam().text), GetParam().paragraphs);
}

INSTANTIATE_TEST_SUITE_P(EndsOfParagraphs, DocumentText,
                         testing::Values(Division{u""_qs, {u""_qs}}, Division{u"a"_qs, {u"a"_qs}},
                                         Division{u"a\nb"_qs, {u"a"_qs, u"b"_qs}},
                                         Division{u"a\r\nb"_qs, {u"a"_qs, u"b"_qs}},
                                         Division{u"a\rb"_qs, {u"a"_qs, u"b"_qs}},
                                         Division{u"a\r\r\nb"_qs, {u"a"_qs, u""_qs, u"b"_qs}},
                                         Division{u"a\n\rb"_qs, {u"a"_qs, u""_qs, u"b"_qs}},
                                         Division{u"a\u0085b\u2029c"_qs, {u"a"_qs, u"b"_qs, u"c"_qs}},
                                         Division{u"\na\n\n"_qs, {u""_qs, u"a"_qs, u""_qs, u""_qs}}));

INSTANTIATE_TEST_SUITE_P(BreaksOfLines, DocumentText,
                         testing::Values(Division{u"a\u2028b"_qs, {u"a\u2028b"_qs}},
                                         Division{u"a\u000Bb\u000Cc"_qs, {u"a\u2028b\u2028c"_qs}}));

INSTANTIATE_TEST_SUITE_P(
    WhatADocumentCannotHold, DocumentText,
    testing::Values(Division{u"a\tb"_qs, {u"a\tb"_qs}},
                    Division{QString(u"a\0\u0001\u0008\u000E\u001F\u007F\u0080\u0084\u0086\u009Fb"_qs), {u"ab"_qs}},
                    Division{u"a\u00A0b\u200Bc\u00ADd\uFEFFe"_qs, {u"a\u00A0b\u200Bc\u00ADd\uFEFFe"_qs}},
                    Division{QString(u'a') + QChar(0xD83D) + u'b', {u"a\uFFFDb"_qs}},
                    Division{QString(u'a') + QChar(0xDE00), {u"a\uFFFD"_qs}},
                    Division{u"\uFFFE\uFFFF\uFDD0\U0001FFFE\U0010FFFF"_qs, {u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"_qs}},
                    Division{u"😀 \U000E0061"_qs, {u"😀 \U000E0061"_qs}}));

} // namespace
