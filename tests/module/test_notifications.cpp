#include "module/new_message_notification.h"
#include "module/sending_notification.h"
#include "module/sim_transfer_window.h"
#include "tests/module/module_window_test.h"

#include "framework/ui/dialog.h"
#include "lists/main_window.h"

#include <QFileInfo>

namespace {

using namespace module_test;
using NotificationTest = ModuleWindowTest;
using tessaly::sms::NewMessageNotification;
using tessaly::sms::SendingNotification;
using tessaly::sms::SimTransferWindow;

constexpr std::int64_t kMinute = 60 * 1000;

// ---- the new-message notification

class NewMessageNotificationTest : public NotificationTest {
protected:
    NewMessageNotification* notification() const { return moduleContext().messageNotification; }
};

TEST_F(NewMessageNotificationTest, TheLineOfFurtherMessagesCountsTheOthers) {
    const struct {
        int unread;
        bool shown;
        const char* text;
    } cases[] = {
        {1, false, ""},
        {2, true, "There is another new message."},
        {3, true, "There are 2 other new messages."},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < c.unread; ++i)
            receive(u"+447700900101", u"Hello");
        ASSERT_NE(notification(), nullptr) << c.unread;
        EXPECT_EQ(notification()->unreadCount(), c.unread);
        EXPECT_EQ(notification()->isItemVisible(IDC_NOTIFY_OTHERS), c.shown) << c.unread;
        if (c.shown) {
            EXPECT_EQ(notification()->itemText(IDC_NOTIFY_OTHERS), QLatin1String(c.text));
        }
        ASSERT_TRUE(testkit::click(*notification(), IDC_NOTIFY_READ_ALL));
        settle();
        ASSERT_TRUE(GSM::sms.deleteMessages(GSM::Sms::FolderInbox, 0).isOk());
        settle();
    }
}

TEST_F(NewMessageNotificationTest, OneWindowKeepsTheFirstMessageWhateverArrivesLater) {
    receive(u"+447700900101", u"First");
    NewMessageNotification* first = notification();
    ASSERT_NE(first, nullptr);
    first->showWindow(SW_HIDE);
    receive(u"+447700900102", u"Second");
    EXPECT_EQ(notification(), first);
    EXPECT_TRUE(first->isVisible()) << "shown again";
    EXPECT_EQ(first->itemText(IDC_NOTIFY_TEXT), QStringLiteral("First"));
    EXPECT_EQ(first->itemText(IDC_NOTIFY_OTHERS), QStringLiteral("There is another new message."));
    int notifications = 0;
    for (tessaly::Dialog* window : tessaly::Dialog::windows())
        notifications += window->templateId() == IDD_NEW_MESSAGE_NOTIFICATION;
    EXPECT_EQ(notifications, 1);
}

TEST_F(NewMessageNotificationTest, OnlyAGrowingCountGivesFreshFiveMinutes) {
    receive(u"+447700900101", u"First");
    clock.advance(4 * kMinute);
    const long second = receive(u"+447700900102", u"Second");
    clock.advance(4 * kMinute);
    settle();
    ASSERT_NE(notification(), nullptr) << "the second arrival restarted the five minutes";

    // Read elsewhere: the count falls, the timer runs on.
    ASSERT_TRUE(GSM::sms.setMessageStatus(second, GSM::Message::Read).isOk());
    settle();
    EXPECT_EQ(notification()->unreadCount(), 1);
    clock.advance(kMinute - 1);
    settle();
    ASSERT_NE(notification(), nullptr);
    clock.advance(1);
    settle();
    EXPECT_EQ(notification(), nullptr) << "five minutes after the last growth";
}

TEST_F(NewMessageNotificationTest, ClosedByThePersonTheMessageIsReadByTheTimerItStaysUnread) {
    const struct {
        const char* how;
        std::function<void(tessaly::Dialog&)> close;
        GSM::Message::Status status;
    } cases[] = {
        {"five minutes pass",
         [this](tessaly::Dialog&) { clock.advance(NewMessageNotification::kCloseAfterMs); },
         GSM::Message::Unread},
        {"Read All", [](tessaly::Dialog& w) { testkit::click(w, IDC_NOTIFY_READ_ALL); },
         GSM::Message::Read},
        {"Escape", [](tessaly::Dialog& w) { w.sendCommand(IDCANCEL); }, GSM::Message::Read},
        {"the module stops", [](tessaly::Dialog&) { exitModule(); }, GSM::Message::Unread},
    };
    for (const auto& c : cases) {
        const long id = receive(u"+447700900101", u"Hello");
        ASSERT_NE(notification(), nullptr) << c.how;
        c.close(*notification());
        settle();
        EXPECT_EQ(notification(), nullptr) << c.how;
        EXPECT_EQ(statusOf(id), c.status) << c.how;
        EXPECT_EQ(clock.activeTimers(), 0u) << c.how;
    }
}

TEST_F(NewMessageNotificationTest, ShowsTheSenderTheWayThePhoneBookKnowsHim) {
    ASSERT_TRUE(simulator::addContact(u"Ada", u"Lovelace", {u"+447700900111"}).isOk());
    const struct {
        const char16_t* from;
        const char* name;
        const char* number;
        bool replyEnabled;
    } cases[] = {
        {u"+447700900111", "Ada Lovelace", "+447700900111", true},
        {u"+447700900222", "+447700900222", "", true},
    };
    for (const auto& c : cases) {
        receive(c.from, u"Tea?");
        ASSERT_NE(notification(), nullptr);
        EXPECT_EQ(notification()->itemText(IDC_NOTIFY_NAME), QLatin1String(c.name));
        EXPECT_EQ(notification()->itemText(IDC_NOTIFY_NUMBER), QLatin1String(c.number));
        EXPECT_EQ(notification()->isItemVisible(IDC_NOTIFY_NUMBER), *c.number != 0);
        EXPECT_EQ(notification()->isItemEnabled(IDC_NOTIFY_REPLY), c.replyEnabled);
        EXPECT_TRUE(notification()->isItemEnabled(IDC_NOTIFY_CALL_BACK));
        EXPECT_EQ(notification()->itemText(IDC_NOTIFY_TEXT), QStringLiteral("Tea?"));
        EXPECT_FALSE(notification()->itemText(IDC_NOTIFY_DATE).isEmpty());
        notification()->destroyWindow();
        settle();
    }

    openMessageNotification(987654); // an id the library does not know
    ASSERT_NE(notification(), nullptr);
    EXPECT_TRUE(notification()->itemText(IDC_NOTIFY_NAME).isEmpty());
    EXPECT_FALSE(notification()->isItemEnabled(IDC_NOTIFY_REPLY));
    EXPECT_FALSE(notification()->isItemEnabled(IDC_NOTIFY_CALL_BACK));
}

TEST_F(NewMessageNotificationTest, CallBackIsOfferedOnlyWithVoiceAndSaysWhenTheCallFails) {
    voiceAvailable = false;
    receive(u"+447700900101", u"Ring me");
    EXPECT_FALSE(notification()->isItemEnabled(IDC_NOTIFY_CALL_BACK));
    notification()->destroyWindow();
    settle();

    voiceAvailable = true;
    callResult = GSM::Result(GSM::ErrorNoNetwork, u"No network");
    const long id = receive(u"+447700900101", u"Ring me again");
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::click(*notification(), IDC_NOTIFY_CALL_BACK));
    settle();
    EXPECT_EQ(notification(), nullptr);
    EXPECT_EQ(calls, std::vector<QString>{QStringLiteral("+447700900101")});
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().front().text,
              QStringLiteral("You can not call +447700900101, because you are currently unable "
                             "to establish a connection."));
    EXPECT_EQ(user.boxes().front().icon(), MB_ICONSTOP);
    EXPECT_EQ(statusOf(id), GSM::Message::Read);
}

TEST_F(NewMessageNotificationTest, ReplyAndReadAllHandTheWorkOn) {
    const long id = receive(u"+447700900101", u"Question?");
    ASSERT_TRUE(testkit::click(*notification(), IDC_NOTIFY_REPLY));
    settle();
    EXPECT_EQ(notification(), nullptr);
    ASSERT_EQ(edited.size(), 1u) << "the library asks the host for a composer";

    receive(u"+447700900101", u"Another");
    ASSERT_TRUE(testkit::click(*notification(), IDC_NOTIFY_READ_ALL));
    settle();
    EXPECT_EQ(services, std::vector<GSM::ServiceId>{GSM::ServiceSms});
    EXPECT_NE(statusOf(id), GSM::Message::Unread);
}

// ---- the sending notification and its completion

class SendingNotificationTest : public NotificationTest {
protected:
    SendingNotification* sending() const { return moduleContext().sendingNotification; }
};

// 200 characters of the GSM alphabet: two segments.
const std::u16string kTwoSegments(200, u'x');

TEST_F(SendingNotificationTest, ShowsEachSegmentForEachRecipientThenTheCompletion) {
    ASSERT_TRUE(simulator::addContact(u"Grace", u"Hopper", {u"+447700900333"}).isOk());
    queueMessage({u"+447700900333", u"+447700900444"}, kTwoSegments);
    struct Seen {
        QString name;
        QString number;
        QString segment;
    };
    std::vector<Seen> seen;
    for (int turn = 0; turn < 4; ++turn) {
        step();
        ASSERT_NE(sending(), nullptr) << turn;
        EXPECT_TRUE(sending()->isVisible());
        EXPECT_TRUE(sending()->isItemVisible(IDC_SENDING_SEGMENT));
        seen.push_back({sending()->itemText(IDC_SENDING_NAME),
                        sending()->isItemVisible(IDC_SENDING_NUMBER)
                            ? sending()->itemText(IDC_SENDING_NUMBER)
                            : QString(),
                        sending()->itemText(IDC_SENDING_SEGMENT)});
    }
    const std::vector<std::tuple<const char*, const char*, const char*>> expected = {
        {"Grace Hopper", "+447700900333", "1 of 2"},
        {"Grace Hopper", "+447700900333", "2 of 2"},
        {"+447700900444", "", "1 of 2"},
        {"+447700900444", "", "2 of 2"},
    };
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(seen[i].name, QLatin1String(std::get<0>(expected[i]))) << i;
        EXPECT_EQ(seen[i].number, QLatin1String(std::get<1>(expected[i]))) << i;
        EXPECT_EQ(seen[i].segment, QLatin1String(std::get<2>(expected[i]))) << i;
    }
    EXPECT_EQ(sending()->itemText(IDC_SENDING_TEXT), QString::fromStdU16String(kTwoSegments));

    user.answerBox(IDOK);
    step(3);
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().front().text, QStringLiteral("Your messages were sent successfully."))
        << "two recipients are two messages";
    EXPECT_EQ(sending(), nullptr);
}

TEST_F(SendingNotificationTest, ASingleSegmentShowsNoSegmentLine) {
    queueMessage({u"+447700900444"}, u"Short");
    step();
    ASSERT_NE(sending(), nullptr);
    EXPECT_FALSE(sending()->isItemVisible(IDC_SENDING_SEGMENT));
    EXPECT_FALSE(sending()->isItemVisible(IDC_SENDING_SEGMENT_LABEL));
    user.answerBox(IDOK);
    step(2);
}

TEST_F(SendingNotificationTest, CompletionTextsForSuccessFailureAndTheNetworksOwnWords) {
    const struct {
        GSM::Result result;
        bool plural;
        const char* text;
        UINT icon;
    } cases[] = {
        {GSM::Result(), false, "Your message was sent successfully.", MB_ICONINFORMATION},
        {GSM::Result(), true, "Your messages were sent successfully.", MB_ICONINFORMATION},
        {GSM::Result(GSM::ErrorNoNetwork, u"No network"), false,
         "There was an error while sending your message.", MB_ICONSTOP},
        {GSM::Result(GSM::ErrorNoNetwork, u"No network"), true,
         "There were errors while sending your messages.", MB_ICONSTOP},
        {GSM::Result(GSM::ErrorNetworkRejected, u"Number barred by the operator"), false,
         "Number barred by the operator", MB_ICONSTOP},
        {GSM::Result(GSM::ErrorNetworkRejected, u"Number barred by the operator"), true,
         "Number barred by the operator", MB_ICONSTOP},
    };
    for (const auto& c : cases) {
        user.forget();
        user.answerBox(IDOK);
        openSendingCompletion(c.result, c.plural);
        ASSERT_NE(sending(), nullptr);
        EXPECT_FALSE(sending()->isVisible()) << "hidden while the box shows";
        settle();
        ASSERT_EQ(user.boxes().size(), 1u) << c.text;
        EXPECT_EQ(user.boxes().front().text, QLatin1String(c.text));
        EXPECT_EQ(user.boxes().front().icon(), c.icon) << c.text;
        EXPECT_EQ(user.boxes().front().buttons(), UINT(MB_OK));
        EXPECT_TRUE(user.boxes().front().flags & MB_TOPMOST);
        EXPECT_EQ(sending(), nullptr) << "the window goes with the box";
    }
}

TEST_F(SendingNotificationTest, TheBoxAnswersItselfAfterTwentySeconds) {
    bool openAt19999 = false;
    user.answerBox(IDCANCEL, [&](const testkit::ShownBox&) {
        clock.advance(SendingNotification::kCompletionBoxMs - 1);
        openAt19999 = true; // still here: the answer below would be taken otherwise
        clock.advance(1);
    });
    openSendingCompletion(GSM::Result(), false);
    settle();
    EXPECT_TRUE(openAt19999);
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(sending(), nullptr);
    EXPECT_EQ(clock.activeTimers(), 0u);

    // Answered in time: the timer goes with the box.
    user.answerBox(IDOK);
    openSendingCompletion(GSM::Result(), false);
    settle();
    EXPECT_EQ(clock.activeTimers(), 0u);
    clock.advance(SendingNotification::kCompletionBoxMs);
    EXPECT_EQ(user.boxes().size(), 2u);
}

TEST_F(SendingNotificationTest, ARunEndingWhileTheBoxIsUpGetsItsOwnBoxAfterIt) {
    user.answerBox(IDOK, [](const testkit::ShownBox&) {
        openSendingCompletion(GSM::Result(GSM::ErrorNoNetwork, u"No network"), false);
    });
    user.answerBox(IDOK);
    openSendingCompletion(GSM::Result(), false);
    settle();
    ASSERT_EQ(user.boxes().size(), 2u);
    EXPECT_EQ(user.boxes()[0].text, QStringLiteral("Your message was sent successfully."));
    EXPECT_EQ(user.boxes()[1].text,
              QStringLiteral("There was an error while sending your message."));
    EXPECT_EQ(sending(), nullptr);
    EXPECT_EQ(clock.activeTimers(), 0u);
}

TEST_F(SendingNotificationTest, DismissHidesProgressUntilSendNowInTheOutbox) {
    const long id = queueMessage({u"+447700900444"}, kTwoSegments);
    step();
    ASSERT_NE(sending(), nullptr);
    ASSERT_TRUE(testkit::click(*sending(), IDC_SENDING_DISMISS));
    settle();
    EXPECT_EQ(sending(), nullptr);
    EXPECT_TRUE(moduleContext().sendingNotificationSuppressed);

    step();
    EXPECT_EQ(sending(), nullptr) << "the second segment shows nothing";
    user.answerBox(IDOK);
    step(2);
    EXPECT_EQ(user.boxes().size(), 1u) << "the completion is still told";

    // "Send Now" on the message in the Outbox lets progress show again.
    openSms();
    settle();
    auto* main = dynamic_cast<tessaly::sms::MainSmsWindow*>(moduleContext().mainWindow);
    ASSERT_NE(main, nullptr);
    main->showFolder(tessaly::sms::kOutboxFolder);
    tessaly::ListView* list = main->listView(IDC_MAIN_LIST);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->itemCount(), 1);
    user.chooseMenu(IDM_OUTBOX_SEND_NOW);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    EXPECT_FALSE(moduleContext().sendingNotificationSuppressed);
    EXPECT_EQ(statusOf(id), GSM::Message::SendNow);
    step();
    ASSERT_NE(sending(), nullptr) << "progress shows again";
    EXPECT_EQ(sending()->messageId(), id);
    user.answerBox(IDOK);
    step(3);
    EXPECT_EQ(user.boxes().size(), 2u);
}

TEST_F(SendingNotificationTest, ProgressOffShowsOnlyTheCompletion) {
    storeSettings(false);
    moduleContext().settings = SmsSettings();
    queueMessage({u"+447700900444"}, kTwoSegments);
    step(2);
    EXPECT_EQ(sending(), nullptr);
    user.answerBox(IDOK);
    step(2);
    EXPECT_EQ(user.boxes().size(), 1u);
}

// ---- the SIM transfer window

class SimTransferTest : public NotificationTest {
protected:
    SimTransferWindow* simWindow() const { return moduleContext().simTransferWindow; }
    static void putOnSim(int count, int capacity) {
        std::vector<simulator::SimMessage> messages;
        for (int i = 0; i < count; ++i)
            messages.push_back({u"+447700900120", u"Kept on the SIM", {}, false, {}});
        ASSERT_TRUE(simulator::setSimContents(messages, capacity).isOk());
    }
    static int inboxSize() {
        return GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate)->size();
    }
};

TEST_F(SimTransferTest, TheNoteShowsOnlyWhenTheSimIsFull) {
    const struct {
        int count;
        int capacity;
        bool full;
    } cases[] = {{5, 5, true}, {3, 5, false}};
    for (const auto& c : cases) {
        putOnSim(c.count, c.capacity);
        settle();
        ASSERT_NE(simWindow(), nullptr);
        EXPECT_TRUE(simWindow()->isVisible());
        EXPECT_EQ(simWindow()->isItemVisible(IDC_SIM_NOTE_LABEL), c.full) << c.count;
        EXPECT_EQ(simWindow()->isItemVisible(IDC_SIM_FULL_TEXT), c.full) << c.count;
        EXPECT_FALSE(simWindow()->isItemVisible(IDC_SIM_PROGRESS));
        EXPECT_TRUE(testkit::click(*simWindow(), IDCANCEL) || (simWindow()->destroyWindow(), true));
        settle();
    }
}

TEST_F(SimTransferTest, YesMovesTheMessagesWithProgressAndTellsTheEnd) {
    putOnSim(3, 5);
    settle();
    ASSERT_NE(simWindow(), nullptr);
    ASSERT_TRUE(testkit::click(*simWindow(), IDC_SIM_YES));
    tessaly::ProgressBar* bar = simWindow()->progressBar(IDC_SIM_PROGRESS);
    ASSERT_NE(bar, nullptr);
    EXPECT_TRUE(simWindow()->isItemVisible(IDC_SIM_PROGRESS));
    EXPECT_FALSE(simWindow()->isItemEnabled(IDC_SIM_YES));
    EXPECT_FALSE(simWindow()->isItemEnabled(IDC_SIM_NO));
    EXPECT_EQ(bar->maximum(), 3);
    EXPECT_EQ(bar->pos(), 0);
    step();
    EXPECT_EQ(bar->pos(), 1);
    step();
    EXPECT_EQ(bar->pos(), 2);

    user.answerBox(IDOK);
    step();
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().front().text,
              QStringLiteral("Retrieving SMS messages from your SIM card has been completed."));
    EXPECT_EQ(user.boxes().front().icon(), MB_ICONINFORMATION);
    EXPECT_EQ(simWindow(), nullptr);
    EXPECT_EQ(inboxSize(), 3);
}

TEST_F(SimTransferTest, TheBarNeverRunsPastItsEnd) {
    openSimNotification(1, 5);
    ASSERT_NE(simWindow(), nullptr);
    simWindow()->progressBar(IDC_SIM_PROGRESS)->setRange(0, 1);
    for (int i = 0; i < 3; ++i)
        openSimNotification(0, 0);
    EXPECT_EQ(simWindow()->progressBar(IDC_SIM_PROGRESS)->pos(), 1);
}

TEST_F(SimTransferTest, NoSwitchesTheOfferOff) {
    putOnSim(2, 5);
    settle();
    ASSERT_TRUE(testkit::click(*simWindow(), IDC_SIM_NO));
    settle();
    EXPECT_EQ(simWindow(), nullptr);
    EXPECT_FALSE(GSM::Preferences::getMainPreferences()->askToMoveSimMessages());
    putOnSim(3, 5);
    settle();
    EXPECT_EQ(simWindow(), nullptr) << "not offered again";
}

TEST_F(SimTransferTest, AFailedStartShowsTheLibrarysWordsAndCloses) {
    openSimNotification(2, 5); // the SIM itself is empty: the library refuses
    user.answerBox(IDOK);
    ASSERT_TRUE(testkit::click(*simWindow(), IDC_SIM_YES));
    settle();
    ASSERT_EQ(user.boxes().size(), 1u);
    EXPECT_EQ(user.boxes().front().text, QStringLiteral("There are no messages on the SIM."));
    EXPECT_EQ(user.boxes().front().icon(), MB_ICONSTOP);
    EXPECT_EQ(simWindow(), nullptr);
}

TEST_F(SimTransferTest, LeavingServiceClosesTheWindowFromItsOwnLoop) {
    putOnSim(2, 5);
    settle();
    simulator::setDeviceState(GSM::Device::StateRegisteredRoaming);
    settle();
    ASSERT_NE(simWindow(), nullptr) << "roaming is still in service";
    simulator::setDeviceState(GSM::Device::StateSearching);
    tessaly::telephony::EventQueue::instance().deliverAll();
    EXPECT_NE(simWindow(), nullptr) << "not inside the event";
    settle();
    EXPECT_EQ(simWindow(), nullptr);
}

TEST_F(SimTransferTest, TheEndOfAMoveIsToldWithAndWithoutTheWindow) {
    for (bool withWindow : {true, false}) {
        if (withWindow)
            openSimNotification(2, 5);
        user.answerBox(IDOK);
        openSimNotification(-1, -1);
        ASSERT_NE(simWindow(), nullptr);
        EXPECT_FALSE(simWindow()->isVisible() && !withWindow) << "never shown for the end alone";
        settle();
        EXPECT_EQ(simWindow(), nullptr);
        ASSERT_EQ(user.boxes().size(), 1u);
        user.forget();
    }
}

TEST_F(SimTransferTest, TheHeaderMovesEveryHalfSecond) {
    openSimNotification(2, 5);
    ASSERT_NE(simWindow(), nullptr);
    clock.advance(SimTransferWindow::kHeaderTickMs * 3);
    EXPECT_EQ(simWindow()->headerFrame(), 3);
}

// ---- handing control back

TEST_F(NotificationTest, IdleIsCalledOnceWhenTheLastWindowGoes) {
    receive(u"+447700900101", u"Hello");
    openSimNotification(2, 5);
    openSendingNotification(queueMessage({u"+447700900444"}, u"Hi"), 0, 1, 1, 0, 0);
    // (the queued message is sent on a later clock turn; the clock stands still here)
    ASSERT_NE(moduleContext().messageNotification, nullptr);
    ASSERT_NE(moduleContext().sendingNotification, nullptr);

    testkit::click(*moduleContext().messageNotification, IDC_NOTIFY_READ_ALL);
    settle();
    EXPECT_TRUE(idleCalls.empty()) << "the SIM window and the sending notification remain";

    moduleContext().sendingNotification->destroyWindow();
    settle();
    EXPECT_TRUE(idleCalls.empty()) << "only the two named windows hand back";

    testkit::click(*moduleContext().simTransferWindow, IDC_SIM_NO);
    settle();
    EXPECT_EQ(idleCalls, std::vector<void*>{&hostObject});

    openSms();
    settle();
    receive(u"+447700900101", u"Again");
    moduleContext().messageNotification->destroyWindow();
    settle();
    EXPECT_EQ(idleCalls.size(), 1u) << "the main window remains";
}

// ---- pictures for a person to look at (build/test-output/)

TEST_F(SimTransferTest, PicturesOfTheThreeWindows) {
    ASSERT_TRUE(simulator::addContact(u"Ada", u"Lovelace", {u"+447700900111"}).isOk());
    receive(u"+447700900111",
            u"Are we still on for tonight? I booked the table at eight, bring the photos.");
    receive(u"+447700900222", u"Second");
    receive(u"+447700900223", u"Third");
    ASSERT_NE(moduleContext().messageNotification, nullptr);
    std::vector<QString> pictures;
    auto picture = [&pictures](const tessaly::Dialog& window, const char* name) {
        pictures.push_back(testkit::testOutputPath(QLatin1String(name)));
        EXPECT_TRUE(testkit::saveScreenshot(window, pictures.back())) << name;
    };
    picture(*moduleContext().messageNotification, "notify_new_message.png");

    queueMessage({u"+447700900111"},
                 u"Here are the directions: take the coastal road past the harbour, turn left at "
                 u"the lighthouse and follow the signs to the old mill. Parking is behind the "
                 u"barn, the door is open.");
    step();
    ASSERT_NE(moduleContext().sendingNotification, nullptr);
    picture(*moduleContext().sendingNotification, "notify_sending.png");
    user.answerBox(IDOK);
    step(3);

    putOnSim(5, 5);
    settle();
    ASSERT_NE(simWindow(), nullptr);
    picture(*simWindow(), "notify_sim_full.png");
    ASSERT_TRUE(testkit::click(*simWindow(), IDC_SIM_YES));
    step(2);
    clock.advance(SimTransferWindow::kHeaderTickMs);
    picture(*simWindow(), "notify_sim_moving.png");
    user.answerBox(IDOK);
    step(3);
    for (const QString& path : pictures)
        EXPECT_GT(QFileInfo(path).size(), 0) << path.toStdString();
}

} // namespace
