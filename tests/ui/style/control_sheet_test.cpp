#include "ui/support/ui_test.h"

#include <QTest>

namespace sorvanta {

namespace {

class ControlSheet : public UiTest { };

TEST_F(ControlSheet, loadsWithoutAWarningInBothThemes)
{
    ASSERT_NE(showType("Sorvanta.ControlSheet", "ControlSheet"), nullptr);
    QMetaObject::invokeMethod(root, "open");
    const QImage light = grab();
    savePicture("09-components");
    setDark(true);
    const QImage dark = grab();
    savePicture("09-components-dark");
    EXPECT_EQ(light.pixelColor(4, 4), QColor("#F5F7F8"));
    EXPECT_EQ(dark.pixelColor(4, 4), QColor("#15191B"));
}

} // namespace

} // namespace sorvanta
