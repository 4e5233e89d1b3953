#include "framework/ui/menu.h"
#include "lists/message_view.h"
#include "lists_fixture.h"
#include "resources/resource.h"

#include <QAction>
#include <QFileInfo>
#include <QFontDatabase>

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
