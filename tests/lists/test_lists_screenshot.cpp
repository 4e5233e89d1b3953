#include "framework/ui/menu.h"
#include "framework/ui/phone_message_box.h"
#include "framework/ui/useragent.h"
#include "lists/message_view.h"
#include "lists_fixture.h"
#include "resources/resource.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

using namespace lists_test;
namespace testkit = tessaly::testkit;

// Pictures of the main window, the message view and the Delete Messages window with a lived-in
// phone, for a person to look at (build/test-output/); nothing is compared.
class ListsScreenshot : public ListsWindowTest {
protected:
    void SetUp() override {
        ListsWindowTest::SetUp();
        struct Person {
            const char16_t* first;
            const char16_t* last;
            const char16_t* number;
        };
        const Person people[] = {{u"Anna", u"Berger", u"+436641234567"},
                                 {u"Tom", u"Huber", u"+436765551234"},
                                 {u"Lisa", u"Wagner", u"+436609876543"},
                                 {u"Markus", u"Steiner", u"+436502223344"}};
        for (const Person& person : people)
            ASSERT_TRUE(simulator::addContact(person.first, person.last, {person.number}).isOk());
        store({message(0, GSM::Message::Unread, u"+436641234567", u"Are we still on for tonight?",
                       at(2024, 5, 17, 9, 41)),
               message(0, GSM::Message::Read, u"+436765551234", u"Train is late.\nSorry!",
                       at(2024, 5, 16, 21, 3)),
               message(0, GSM::Message::Replied, u"+436609876543", u"Meeting moved to 3 pm",
                       at(2024, 5, 16, 14, 30)),
               message(0, GSM::Message::Incomplete, u"06991112223", u"Your parcel is waiting",
                       at(2024, 5, 14, 7, 55)),
               message(1, GSM::Message::Failed, u"+436502223344", u"I will be there",
                       at(2024, 5, 16, 14, 35))});
    }
};

TEST_F(ListsScreenshot, MainWindowViewAndDeleteWindow) {
    tessaly::sms::MainSmsWindow* main = openMain();
    ASSERT_NE(main, nullptr);
    const QString mainPath = testkit::testOutputPath(QStringLiteral("lists_main_window.png"));
    ASSERT_TRUE(testkit::saveScreenshot(*main, mainPath));
    EXPECT_TRUE(QFileInfo(mainPath).size() > 0);
    const auto pictures = [](const tessaly::Dialog& window) {
        std::vector<int> commands;
        for (const QAction* action : window.commandBar()->actions())
            if (!action->icon().isNull())
                commands.push_back(action->data().toInt());
        return commands;
    };
    EXPECT_EQ(pictures(*main), std::vector<int>{IDM_MAIN_NEW}) << "New as its picture";

    user.runModal([&](tessaly::Dialog& view) {
        EXPECT_EQ(pictures(view), std::vector<int>{IDM_VIEW_INBOX_NEW});
        testkit::click(view, IDC_VIEW_DOWN);
        EXPECT_TRUE(testkit::saveScreenshot(
            view, testkit::testOutputPath(QStringLiteral("lists_message_view.png"))));
    });
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_LIST, 0));
    settle();

    user.chooseMenu(IDM_FOLDER_OUTBOX);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    EXPECT_TRUE(testkit::saveScreenshot(
        *main, testkit::testOutputPath(QStringLiteral("lists_outbox.png"))));
    user.chooseMenu(IDM_OUTBOX_DELETE_MESSAGES);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    tessaly::Dialog* deleteWindow = testkit::findWindow(IDD_DELETE_MESSAGES);
    ASSERT_NE(deleteWindow, nullptr);
    EXPECT_TRUE(testkit::saveScreenshot(
        *deleteWindow, testkit::testOutputPath(QStringLiteral("lists_delete_messages.png"))));
}

// The phone as a person sees it with the production boxes and menus over the main window
// (fit_*.png): a box of the longest kind inside the screen, the tap that closes the
// "sent" box not opening the message beneath, the Tools menu opening upward.
class PhoneFitPictures : public ListsScreenshot {
protected:
    void SetUp() override {
        ListsScreenshot::SetUp();
        std::vector<simulator::StoredMessage> more;
        for (int i = 0; i < 14; ++i)
            more.push_back(message(0, GSM::Message::Unread, u"+436765551234",
                                   u"Still here? " + std::u16string(1, char16_t(u'a' + i)),
                                   at(2024, 5, 13, 8, i)));
        store(more);
        main_ = openMain();
        ASSERT_NE(main_, nullptr);
        main_->window()->move(0, 0);
        main_->showWindow(SW_SHOW);
    }

    // The main window with the windows over it drawn where they stand.
    QImage phonePicture(std::initializer_list<QWidget*> over) const {
        QImage picture = main_->window()->grab().toImage();
        QPainter painter(&picture);
        for (QWidget* window : over)
            painter.drawPixmap(window->geometry().topLeft() - main_->window()->geometry().topLeft(),
                               window->grab());
        return picture;
    }

    // Runs a production box over the main window; `whileShown` gets it once it is up.
    int productionBox(const QString& text, UINT flags,
                      const std::function<void(tessaly::PhoneMessageBox&)>& whileShown) {
        tessaly::UserAgent::install(nullptr);
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<tessaly::PhoneMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            whileShown(*box);
        });
        const int result = tessaly::UserAgent::current().messageBox(main_->window(), text,
                                                                    QStringLiteral("SMS"), flags);
        tessaly::UserAgent::install(&user);
        return result;
    }

    tessaly::sms::MainSmsWindow* main_ = nullptr;
};

TEST_F(PhoneFitPictures, LongBoxInsideTheScreen) {
    const int answer = productionBox(
        QStringLiteral("The sender information is empty. Do you want to continue?"),
        MB_YESNO | MB_ICONQUESTION, [&](tessaly::PhoneMessageBox& box) {
            EXPECT_TRUE(main_->window()->geometry().contains(box.frameGeometry()));
            phonePicture({&box}).save(testkit::testOutputPath(QStringLiteral("fit_1_after.png")));
            box.finish(IDNO);
        });
    EXPECT_EQ(answer, IDNO);
}

TEST_F(PhoneFitPictures, TheTapThatClosesTheSentBoxOpensNothing) {
    QPoint underOk; // in the list's viewport
    tessaly::ListView* list = main_->listView(IDC_MAIN_LIST);
    ASSERT_NE(list, nullptr);
    productionBox(
        QStringLiteral("Your message was sent successfully."), MB_OK | MB_ICONINFORMATION,
        [&](tessaly::PhoneMessageBox& box) {
            QPushButton* ok = box.findChild<QPushButton*>();
            underOk = list->viewport()->mapFromGlobal(ok->mapToGlobal(ok->rect().center()));
            phonePicture({&box}).save(testkit::testOutputPath(QStringLiteral("fit_8_box.png")));
            QTest::mouseClick(ok, Qt::LeftButton);
        });
    ASSERT_TRUE(list->viewport()->rect().contains(underOk));
    ASSERT_NE(list->itemAt(underOk), nullptr) << "an Inbox row lies under the box's OK";
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, underOk); // the double tap's second
    settle();
    EXPECT_TRUE(user.modals().empty()) << "no message opened";
    QImage after = phonePicture({});
    QPainter painter(&after);
    painter.setPen(QPen(Qt::red, 2));
    painter.drawEllipse(list->viewport()->mapTo(main_->window(), underOk), 9, 9);
    painter.end();
    after.save(testkit::testOutputPath(QStringLiteral("fit_8_after.png")));
    QTest::qWait(QApplication::doubleClickInterval() + 50);
}

TEST_F(PhoneFitPictures, ToolsMenuOpensUpwardInsideTheScreen) {
    tessaly::CommandBar* bar = main_->commandBar();
    QAction* tools = nullptr;
    for (QAction* action : bar->actions())
        if (action->menu())
            tools = action;
    ASSERT_NE(tools, nullptr);
    bar->setActiveAction(tools);
    QMenu* popup = tools->menu();
    ASSERT_TRUE(popup->isVisible());
    const QRect screen = main_->window()->geometry();
    EXPECT_TRUE(screen.contains(popup->geometry()));
    EXPECT_LE(popup->geometry().bottom(), bar->mapToGlobal(QPoint(0, 0)).y());
    phonePicture({popup}).save(testkit::testOutputPath(QStringLiteral("fit_9_after.png")));
    popup->close();
}

// Emoji and flags as people send them, drawn in colour by the emoji font the set-up installs
// (without it they are empty boxes).
TEST_F(ListsScreenshot, EmojiAndFlagsInTheInboxAndTheView) {
    const QStringList families = QFontDatabase::families();
    EXPECT_TRUE(families.contains(QStringLiteral("Noto Color Emoji")))
        << "tools/install-deps installs fonts-noto-color-emoji";
    store({message(0, GSM::Message::Unread, u"+436641234567",
                   u"Happy birthday! 🎂🎉 See you in Berlin 🇩🇪 or Wien 🇦🇹 👍🏽",
                   at(2024, 5, 17, 9, 50))});
    tessaly::sms::MainSmsWindow* main = openMain();
    ASSERT_NE(main, nullptr);
    EXPECT_TRUE(testkit::saveScreenshot(
        *main, testkit::testOutputPath(QStringLiteral("lists_emoji_inbox.png"))));
    user.runModal([](tessaly::Dialog& view) {
        EXPECT_TRUE(testkit::saveScreenshot(
            view, testkit::testOutputPath(QStringLiteral("lists_emoji_view.png"))));
    });
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_LIST, 0));
    settle();
}

} // namespace
