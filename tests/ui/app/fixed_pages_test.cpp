#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QUrl>

#include <gmock/gmock.h>

namespace sorvanta {

namespace {

using testing::ElementsAre;

const QUrl privacy("https://www.example.invalid/sorvanta-mac-os-app-privacy-policy/");
const QUrl terms("https://www.example.invalid/sorvanta-mac-os-app-terms-of-service/");

class TermsAcceptancePage : public UiTest {
protected:
    TermsAcceptancePage()
    {
        showType("Sorvanta.App", "TermsAcceptancePage",
                 {{"privacyUrl", privacy}, {"termsUrl", terms}, {"width", 1200}, {"height", 700}});
    }
};

TEST_F(TermsAcceptancePage, saysItsWordsInOrder)
{
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("Welcome to Sorvanta",
                            "To continue, please review and accept the Terms of Service and Privacy Policy.",
                            "Your data stays on your device. We still need your agreement before enabling the app.",
                            "Read the Privacy Policy", "Read the Terms of Service", "Quit", "I Agree and Continue"));
}

TEST_F(TermsAcceptancePage, acceptsAtOnceWithoutAnyLinkRead)
{
    QSignalSpy accepted(root, SIGNAL(accepted()));
    QSignalSpy quit(root, SIGNAL(quitRequested()));
    click(item("agreeButton"));
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_EQ(quit.count(), 0);
}

TEST_F(TermsAcceptancePage, quitsWithoutAccepting)
{
    QSignalSpy accepted(root, SIGNAL(accepted()));
    QSignalSpy quit(root, SIGNAL(quitRequested()));
    pressAccessibly(item("quitButton"));
    EXPECT_EQ(quit.count(), 1);
    EXPECT_EQ(accepted.count(), 0);
}

TEST_F(TermsAcceptancePage, opensEachLinkAtItsOwnAddress)
{
    QSignalSpy opened(root, SIGNAL(linkOpened(QUrl)));
    click(item("privacyLink"));
    tabTo(item("termsLink"));
    press(Qt::Key_Return);
    ASSERT_EQ(opened.count(), 2);
    EXPECT_EQ(opened[0][0].toUrl(), privacy);
    EXPECT_EQ(opened[1][0].toUrl(), terms);
    EXPECT_EQ(accessible(item("privacyLink"))->role(), QAccessible::Link);
}

TEST_F(TermsAcceptancePage, keepsItsWidthsAndSitsJustAboveTheMiddle)
{
    EXPECT_EQ(item("agreeButton")->width(), 240);
    EXPECT_EQ(item("quitButton")->width(), 112);
    EXPECT_EQ(item("agreeButton")->height(), 40);
    EXPECT_EQ(item("column")->width(), 640);
    const qreal middle = item("column")->y() + item("column")->height() / 2;
    EXPECT_NEAR(middle, 350 - 8, 1);
    root->setWidth(500);
    EXPECT_EQ(item("column")->width(), 452);
}

TEST_F(TermsAcceptancePage, hasAShieldBesideItsPromise)
{
    EXPECT_EQ(item("promiseIcon")->property("symbol").toString(), "shield.checkerboard");
    EXPECT_LT(place("promiseIcon").right(), place("promise").left());
    EXPECT_EQ(place("promiseIcon").center().y(), place("promise").center().y());
}

TEST_F(TermsAcceptancePage, looksAsDrawn)
{
    savePicture("01-agreement");
    const QQuickItem *agree = item("agreeButton");
    EXPECT_EQ(pixel(agree, 20, 20), QColor("#085E78"));
    setDark(true);
    savePicture("01-agreement-dark");
    EXPECT_EQ(pixel(agree, 20, 20), QColor("#1A7A92"));
    EXPECT_EQ(pixel(root, 5, 5), QColor("#15191B"));
}

const QString supportText =
    "If you run into any issues, please email me at help@example.invalid and include as many details as you can "
    "(what you did, what happened, screenshots if possible). That helps me fix the problem faster and support you "
    "better.";

class SupportPage : public UiTest {
protected:
    SupportPage()
    {
        showType("Sorvanta.App", "SupportPage",
                 {{"supportText", supportText},
                  {"modelIssueText", "For model issues, include which model and language you used."},
                  {"privacyUrl", privacy},
                  {"termsUrl", terms},
                  {"width", 940},
                  {"height", 700}});
    }
};

TEST_F(SupportPage, saysItsWordsInOrder)
{
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("Help", supportText, "For model issues, include which model and language you used.",
                            "Key links", "Terms of Service", "Privacy Policy"));
    savePicture("help");
}

TEST_F(SupportPage, opensEachLinkAtItsOwnAddress)
{
    QSignalSpy opened(root, SIGNAL(linkOpened(QUrl)));
    click(item("termsLink"));
    pressAccessibly(item("privacyLink"));
    ASSERT_EQ(opened.count(), 2);
    EXPECT_EQ(opened[0][0].toUrl(), terms);
    EXPECT_EQ(opened[1][0].toUrl(), privacy);
}

} // namespace

} // namespace sorvanta
