// The message box as people see it on the phone: inside the 240×320 screen whatever the text,
// centred on the phone window, and the click that closes it ends there.

#include "framework/ui/controls.h"
#include "framework/ui/phone_message_box.h"
#include "framework/ui/screen.h"
#include "framework/ui/useragent.h"
#include "resources/sms_resources.h"
#include "tests/testkit/window_driver.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using tessaly::PhoneMessageBox;

// The longest texts of the module's string table, longest first.
std::vector<QString> longestTexts(size_t count) {
    std::vector<QString> texts;
    for (const auto& [id, text] : tessaly::sms::resources().strings)
        texts.push_back(text);
    std::sort(texts.begin(), texts.end(),
              [](const QString& a, const QString& b) { return a.size() > b.size(); });
    texts.resize(std::min(count, texts.size()));
    return texts;
}

TEST(PhoneMessageBox, TheLongestTextsFitThePhoneScreen) {
    QWidget phone;
    phone.setGeometry(0, 0, tessaly::kScreenWidth, tessaly::kScreenHeight);
    phone.show();
    std::vector<QString> texts = longestTexts(4);
    texts.push_back(QStringLiteral("The sender information is empty. Do you want to continue?"));
    int picture = 0;
    for (const QString& text : texts) {
        SCOPED_TRACE(text.toStdString());
        PhoneMessageBox box(&phone, text, QStringLiteral("SMS"), MB_YESNOCANCEL | MB_ICONQUESTION);
        QTimer::singleShot(0, &box, [&] {
            const QRect shown = box.frameGeometry();
            EXPECT_LE(box.width(), tessaly::kScreenWidth);
            EXPECT_LE(box.height(), tessaly::kScreenHeight);
            EXPECT_TRUE(phone.frameGeometry().contains(box.geometry())) << "inside the phone";
            EXPECT_LE(std::abs(shown.center().x() - phone.frameGeometry().center().x()), 2);
            for (QPushButton* button : box.findChildren<QPushButton*>())
                EXPECT_TRUE(box.rect().contains(button->geometry())) << "its buttons inside it";
            box.grab().save(tessaly::testkit::testOutputPath(
                QStringLiteral("box_longest_%1.png").arg(++picture)));
            box.finish(IDNO);
        });
        EXPECT_EQ(box.run(), IDNO);
    }
}

TEST(PhoneMessageBox, ButtonsAnswerAndClosingWithoutOneCancels) {
    const struct {
        UINT flags;
        int button; // index of the button pressed, -1 to close the box
        int result;
    } cases[] = {
        {MB_OK, 0, IDOK},           {MB_OK, -1, IDOK},
        {MB_OKCANCEL, 1, IDCANCEL}, {MB_OKCANCEL, -1, IDCANCEL},
        {MB_YESNO, 0, IDYES},       {MB_YESNO, -1, IDYES},
        {MB_YESNOCANCEL, 1, IDNO},  {MB_YESNOCANCEL, -1, IDCANCEL},
    };
    for (const auto& c : cases) {
        PhoneMessageBox box(nullptr, QStringLiteral("Question?"), QStringLiteral("SMS"), c.flags);
        QTimer::singleShot(0, &box, [&] {
            const QList<QPushButton*> buttons =
                box.findChild<QDialogButtonBox*>()->findChildren<QPushButton*>();
            if (c.button < 0)
                box.reject();
            else
                buttons.at(c.button)->click();
        });
        EXPECT_EQ(box.run(), c.result) << c.flags << " " << c.button;
    }
}

// A second tap right after the one that closed the box (a double tap, or a tap meant for the
// box that arrives late) does not reach the list beneath.
TEST(PhoneMessageBox, TheClickThatClosesTheBoxDoesNotReachTheWindowBeneath) {
    tessaly::ListView list;
    list.insertColumn(0, QStringLiteral("Text"), 200);
    list.insertItem(0, QStringLiteral("a message"));
    list.resize(240, 200);
    list.show();
    int opened = 0;
    QObject::connect(&list, &tessaly::ListView::itemClicked, [&](int, int) { ++opened; });
    PhoneMessageBox box(&list, QStringLiteral("Your message was sent successfully."),
                        QStringLiteral("SMS"), MB_OK | MB_ICONINFORMATION);
    QTimer::singleShot(0, &box, [&] {
        QPushButton* ok = box.findChild<QPushButton*>();
        QTest::mouseClick(ok, Qt::LeftButton);
    });
    EXPECT_EQ(box.run(), IDOK);
    const QPoint row = list.visualItemRect(list.item(0, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, row);
    EXPECT_EQ(opened, 0);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, row);
    EXPECT_EQ(opened, 1) << "a later tap opens it as usual";
}

} // namespace
