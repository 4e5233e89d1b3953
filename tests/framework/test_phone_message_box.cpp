// The message box as people see it on the phone: inside the 240×320 screen whatever the text,
// centred on the phone window, and the click that closes it ends there.

#include "framework/resources/resources.h"
#include "framework/ui/controls.h"
#include "framework/ui/dialog.h"
#include "framework/ui/phone_message_box.h"
#include "framework/ui/screen.h"
#include "framework/ui/useragent.h"
#include "resources/resource.h"
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
// box that arrives late) lands where the box's OK was and does not reach the list beneath; a
// tap elsewhere does.
TEST(PhoneMessageBox, TheClickThatClosesTheBoxDoesNotReachTheWindowBeneath) {
    tessaly::ListView list;
    list.insertColumn(0, QStringLiteral("Text"), 200);
    for (int row = 0; row < 30; ++row)
        list.insertItem(row, QStringLiteral("message %1").arg(row));
    list.resize(tessaly::kScreenWidth, tessaly::kScreenHeight);
    list.show();
    std::vector<int> opened;
    QObject::connect(&list, &tessaly::ListView::itemClicked,
                     [&](int row, int) { opened.push_back(row); });
    PhoneMessageBox box(&list, QStringLiteral("Your message was sent successfully."),
                        QStringLiteral("SMS"), MB_OK | MB_ICONINFORMATION);
    QPoint underOk;
    QTimer::singleShot(0, &box, [&] {
        QPushButton* ok = box.findChild<QPushButton*>();
        underOk = list.viewport()->mapFromGlobal(ok->mapToGlobal(ok->rect().center()));
        QTest::mouseClick(ok, Qt::LeftButton);
    });
    EXPECT_EQ(box.run(), IDOK);
    const QPoint firstRow = list.visualItemRect(list.item(0, 0)).center();
    ASSERT_FALSE(list.visualItemRect(list.item(0, 0)).contains(underOk)) << "box over row 0";
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, underOk);
    EXPECT_TRUE(opened.empty()) << "the second tap on OK";
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, firstRow);
    EXPECT_EQ(opened, std::vector<int>{0}) << "a tap outside the box's place";
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, underOk);
    EXPECT_EQ(opened.size(), 2u) << "a later tap where the box was opens as usual";
}

// A box or a modal window holds only the window it came up over, as the platform's modal loops
// do: the simulator panel beside the phone (here another top-level window) still takes clicks.
// Clicks go through the window system, which is where Qt drops those for a blocked window.
TEST(PhoneMessageBox, ModalRunsHoldOnlyTheWindowTheyCameUpOver) {
    tessaly::setCurrentResources(&tessaly::sms::resources());
    tessaly::Dialog phone(IDD_MAIN);
    ASSERT_TRUE(phone.create());
    phone.showWindow(SW_SHOW);
    auto* phoneOk = phone.window()->findChild<QPushButton*>(QStringLiteral("titleOkButton"));
    ASSERT_NE(phoneOk, nullptr);
    QPushButton panel(QStringLiteral("Receive"));
    panel.setGeometry(tessaly::kScreenWidth + 20, 0, 120, 40);
    panel.show();
    int panelClicks = 0;
    int phoneClicks = 0;
    QObject::connect(&panel, &QPushButton::clicked, [&] { ++panelClicks; });
    QObject::connect(phoneOk, &QPushButton::clicked, [&] { ++phoneClicks; });
    const auto clickBoth = [&] {
        QTest::mouseClick(panel.windowHandle(), Qt::LeftButton, {}, panel.rect().center());
        QTest::mouseClick(phone.window()->windowHandle(), Qt::LeftButton, {},
                          phoneOk->mapTo(phone.window(), phoneOk->rect().center()));
    };

    QTimer::singleShot(0, [&] {
        clickBoth();
        tessaly::UserAgent::current().endMessageBox(phone.window(), IDOK);
    });
    EXPECT_EQ(tessaly::UserAgent::current().messageBox(phone.window(), QStringLiteral("Sent."),
                                                       QStringLiteral("SMS"), MB_OK),
              IDOK);
    EXPECT_EQ(panelClicks, 1) << "a box leaves the panel free";
    EXPECT_EQ(phoneClicks, 0) << "and holds its owner";

    tessaly::Dialog modal(IDD_DELETE_MESSAGES, &phone);
    QTimer::singleShot(0, [&] {
        clickBoth();
        modal.endDialog(IDCANCEL);
    });
    EXPECT_EQ(modal.doModal(), IDCANCEL);
    EXPECT_EQ(panelClicks, 2) << "a modal window leaves the panel free";
    EXPECT_EQ(phoneClicks, 0) << "and holds its parent";
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    tessaly::setCurrentResources(nullptr);
}

} // namespace
