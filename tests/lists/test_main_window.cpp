#include "lists/list_sort_table.h"
#include "lists/message_view.h"
#include "lists_fixture.h"
#include "resources/resource.h"

#include "framework/ui/menu.h"

namespace {

using namespace lists_test;
using tessaly::Dialog;
using tessaly::sms::MainSmsWindow;
namespace testkit = tessaly::testkit;

class MainWindowTest : public ListsWindowTest {
protected:
    void SetUp() override {
        ListsWindowTest::SetUp();
        tessaly::sms::listSortTable() = {};
    }

    // Three Inbox messages, oldest first: Anne's (read), a bare number's (unread), Carl's.
    void storeThreeInbox() {
        ASSERT_TRUE(simulator::addContact(u"Anne", u"Ames", {u"+4917011111"}).isOk());
        ASSERT_TRUE(simulator::addContact(u"Carl", u"Cole", {u"+4917033333"}).isOk());
        store({message(0, GSM::Message::Read, u"+4917011111", u"first", at(2024, 5, 15, 9, 0)),
               message(0, GSM::Message::Unread, u"0172222", u"second", at(2024, 5, 16, 9, 0)),
               message(0, GSM::Message::Failed, u"+4917033333", u"third", at(2024, 5, 17, 9, 30))});
    }

    static QStringList column(MainSmsWindow& window, int column) {
        QStringList texts;
        tessaly::ListView* list = window.listView(IDC_MAIN_LIST);
        for (int row = 0; row < list->itemCount(); ++row)
            texts << list->itemText(row, column);
        return texts;
    }
};

TEST_F(MainWindowTest, OpensOnTheLastFolderWithItsColumnsNewestFirst) {
    storeThreeInbox();
    store({message(1, GSM::Message::Sent, u"0175555", u"out", at(2024, 5, 1, 8, 0))});
    environment.settings_.currentList = 1;
    environment.settings_.setColumnWidths(1, {18, 70, 110, 42});
    MainSmsWindow* main = openMain();
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->itemText(IDC_MAIN_FOLDER), QStringLiteral("Outbox"));
    EXPECT_EQ(main->itemText(IDC_MAIN_SORT), QStringLiteral("Date"));
    tessaly::ListView* list = main->listView(IDC_MAIN_LIST);
    EXPECT_EQ(list->columnText(1), QStringLiteral("To"));
    EXPECT_EQ(list->columnText(2), QStringLiteral("Text"));
    EXPECT_EQ(list->columnWidth(2), 110);
    EXPECT_EQ(column(*main, 2), QStringList{QStringLiteral("out")});

    user.chooseMenu(IDM_FOLDER_INBOX);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    EXPECT_EQ(column(*main, 2), (QStringList{"third", "second", "first"}));
    EXPECT_EQ(column(*main, 1), (QStringList{"Carl Cole", "0172222", "Anne Ames"}));
    EXPECT_EQ(list->columnText(1), QStringLiteral("From"));
    const int images[] = {3, 0, 1};
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(list->itemImage(row), images[row]) << row;
    ASSERT_FALSE(environment.saved.empty());
    EXPECT_EQ(environment.saved.back().currentList, 0);
}

TEST_F(MainWindowTest, FolderMenuChecksTheFolderShownAndLabelsFollow) {
    MainSmsWindow* main = openMain();
    const struct {
        int command;
        int checkedBefore;
        const char* label;
    } steps[] = {
        {IDM_FOLDER_OUTBOX, IDM_FOLDER_INBOX, "Outbox"},
        {IDM_FOLDER_OUTBOX, IDM_FOLDER_OUTBOX, "Outbox"},
        {IDM_FOLDER_INBOX, IDM_FOLDER_OUTBOX, "Inbox"},
        {0, IDM_FOLDER_INBOX, "Inbox"},
    };
    for (const auto& step : steps) {
        user.chooseMenu(step.command);
        ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
        const testkit::ShownMenu& shown = user.menus().back();
        EXPECT_EQ(shown.checkedIds(), std::vector<int>{step.checkedBefore});
        EXPECT_TRUE(shown.find(IDM_FOLDER_CELLBROADCAST)->enabled);
        EXPECT_EQ(main->itemText(IDC_MAIN_FOLDER), QLatin1String(step.label));
    }
    // Only a change of folder is saved.
    EXPECT_EQ(environment.saved.size(), 3u);
}

TEST_F(MainWindowTest, SortMenuChecksKeyAndDirectionAndNamesTheKey) {
    storeThreeInbox();
    MainSmsWindow* main = openMain();
    const struct {
        int command;
        std::vector<int> checkedBefore;
        const char* label;
        const char* texts;
    } steps[] = {
        {IDM_SORT_CONTACT, {IDM_SORT_DATE, IDM_SORT_DESCENDING}, "Contact", "third,first,second"},
        {IDM_SORT_ASCENDING,
         {IDM_SORT_CONTACT, IDM_SORT_DESCENDING},
         "Contact",
         "second,first,third"},
        {IDM_SORT_STATUS, {IDM_SORT_CONTACT, IDM_SORT_ASCENDING}, "Status", "second,first,third"},
        {IDM_SORT_DESCENDING,
         {IDM_SORT_STATUS, IDM_SORT_ASCENDING},
         "Status",
         "third,first,second"},
        {IDM_SORT_DATE, {IDM_SORT_STATUS, IDM_SORT_DESCENDING}, "Date", "third,second,first"},
    };
    for (const auto& step : steps) {
        user.chooseMenu(step.command);
        ASSERT_TRUE(testkit::click(*main, IDC_MAIN_SORT));
        EXPECT_EQ(user.menus().back().checkedIds(), step.checkedBefore) << step.label;
        EXPECT_EQ(user.menus().back().flags & TPM_RIGHTALIGN, TPM_RIGHTALIGN);
        EXPECT_EQ(main->itemText(IDC_MAIN_SORT), QLatin1String(step.label));
        EXPECT_EQ(column(*main, 2).join(u','), QLatin1String(step.texts)) << step.label;
    }
    // The order belongs to the folder: the Outbox still sorts by date, newest first.
    EXPECT_EQ(tessaly::sms::listSortTable().sortKey(1), 0);
}

TEST_F(MainWindowTest, ColumnClicksSwitchTheKeyFirstAndFlipTheOrderAfterwards) {
    storeThreeInbox();
    MainSmsWindow* main = openMain();
    const struct {
        int column;
        const char* label;
        const char* texts;
    } clicks[] = {
        {0, "Status", "third,first,second"},  // from date: switch, keep descending
        {0, "Status", "second,first,third"},  // flip
        {0, "Status", "third,first,second"},  // flip back
        {1, "Contact", "third,first,second"}, // numbers before names, descending
        {2, "Contact", "third,first,second"}, // text and date columns do nothing
        {3, "Contact", "third,first,second"}, {1, "Contact", "second,first,third"},
    };
    for (const auto& click : clicks) {
        ASSERT_TRUE(testkit::columnClick(*main, IDC_MAIN_LIST, click.column));
        EXPECT_EQ(main->itemText(IDC_MAIN_SORT), QLatin1String(click.label));
        EXPECT_EQ(column(*main, 2).join(u','), QLatin1String(click.texts)) << click.column;
    }
}

TEST_F(MainWindowTest, ListDatesShowTheTimeOnlyForTodaysCalendarDate) {
    const struct {
        SYSTEMTIME now;
        SYSTEMTIME stamp;
        const char* shown;
    } cases[] = {
        {at(2024, 5, 17, 0, 1), at(2024, 5, 17, 0, 0), "00:00"},
        {at(2024, 5, 17, 0, 1), at(2024, 5, 16, 23, 59), "05-16"},
        {at(2024, 5, 17, 0, 1), at(2024, 5, 17, 23, 30), "23:30"},
        {at(2024, 1, 1, 0, 5), at(2023, 12, 31, 23, 55), "12-31"},
        {at(2024, 5, 17, 12, 0), at(2023, 5, 17, 12, 0), "05-17"},
        {at(2024, 5, 17, 12, 0), at(2024, 1, 1, 8, 0), "01-01"},
    };
    for (const auto& c : cases) {
        tessaly::telephony::close();
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        clock.setLocalNow(c.now);
        store({message(0, GSM::Message::Read, u"0172222", u"x", c.stamp)});
        MainSmsWindow* main = openMain();
        EXPECT_EQ(column(*main, 3), QStringList{QLatin1String(c.shown)});
        main->destroyWindow();
        settle();
    }
}

TEST_F(MainWindowTest, MoreThanAThousandMessagesAreWarnedAboutOncePerWindow) {
    const char* inboxWarning =
        "The Inbox contains more than 1,000 entries. You should delete some entries.";
    const struct {
        int folder;
        int count;
        bool warnedAtOpen;
        const char* warning; // at open, or when one more message arrives
    } cases[] = {
        {0, 1000, false, inboxWarning},
        {0, 1001, true, inboxWarning},
        {1, 1001, true,
         "The Outbox contains more than 1,000 entries. You should delete some entries."},
        {1, 1000, false, nullptr}, // the new message goes to the Inbox
    };
    for (const auto& c : cases) {
        tessaly::telephony::close();
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        std::vector<simulator::StoredMessage> messages(
            c.count, message(c.folder, GSM::Message::Read, u"0172222", u"x", at(2024, 5, 1)));
        store(messages);
        environment.settings_.currentList = c.folder;
        user.forget();
        if (c.warning)
            user.answerBox(IDOK);
        MainSmsWindow* main = openMain();
        ASSERT_EQ(user.boxes().size(), c.warnedAtOpen ? 1u : 0u) << c.count;
        for (int more = 0; more < 2; ++more) {
            ASSERT_TRUE(simulator::receiveMessage(u"0173333", u"one more").isOk());
            settle();
        }
        ASSERT_EQ(user.boxes().size(), c.warning ? 1u : 0u) << c.count;
        if (c.warning) {
            EXPECT_EQ(user.boxes()[0].text, QLatin1String(c.warning));
            EXPECT_EQ(user.boxes()[0].icon(), MB_ICONINFORMATION);
        }
        EXPECT_EQ(main->listView(IDC_MAIN_LIST)->itemCount(), c.count + (c.folder == 0 ? 2 : 0));
        main->destroyWindow();
        settle();
    }
}

TEST_F(MainWindowTest, OpeningARowShowsThatMessageAndMarksItRead) {
    storeThreeInbox();
    MainSmsWindow* main = openMain();
    const std::vector<long> ids = idsByDate(0);
    const struct {
        int row;
        bool ascending;
        long id;
        GSM::Message::Status after;
    } cases[] = {
        {1, false, ids[1], GSM::Message::Read},   // unread, descending
        {0, false, ids[2], GSM::Message::Failed}, // not unread: keeps its status
        {0, true, ids[0], GSM::Message::Read},
    };
    for (const auto& c : cases) {
        tessaly::sms::listSortTable().setAscending(0, c.ascending);
        main->showFolder(0);
        QString shownText;
        user.runModal([&](Dialog& view) { shownText = view.itemText(IDC_VIEW_TEXT); });
        ASSERT_TRUE(testkit::select(*main, IDC_MAIN_LIST, c.row, 2));
        settle();
        EXPECT_EQ(shownText, QString::fromUtf16(GSM::sms.getMessage(c.id)->getText()));
        EXPECT_EQ(GSM::sms.getMessage(c.id)->getStatus(), c.after);
        EXPECT_EQ(main->listView(IDC_MAIN_LIST)->selectedRow(), c.row);
    }
}

TEST_F(MainWindowTest, DeletingInTheViewOfAnUnreadMessageLeavesItDeleted) {
    storeThreeInbox();
    const long unread = idsByDate(0)[1];
    MainSmsWindow* main = openMain();
    user.runModal([](Dialog& view) { ASSERT_TRUE(testkit::chooseCommand(view, IDM_VIEW_DELETE)); })
        .answerBox(IDYES);
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_LIST, 1));
    settle();
    EXPECT_EQ(user.boxes().back().text,
              QStringLiteral("Are you sure that you want to delete this message?"));
    EXPECT_EQ(GSM::sms.getMessage(unread), nullptr);
    EXPECT_EQ(main->listView(IDC_MAIN_LIST)->itemCount(), 2);
    EXPECT_TRUE(errors.empty());
}

TEST_F(MainWindowTest, RowMenuCommands) {
    storeThreeInbox();
    store({message(1, GSM::Message::NotSent, u"+4917011111", u"draft", at(2024, 5, 17, 8, 0))});
    MainSmsWindow* main = openMain();
    const long carl = idsByDate(0)[2];

    // Delete asks first; No keeps the message.
    user.chooseMenu(IDM_INBOX_DELETE).answerBox(IDNO);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    EXPECT_EQ(user.boxes().back().buttons(), MB_YESNO);
    EXPECT_EQ(user.boxes().back().icon(), MB_ICONQUESTION);
    EXPECT_NE(GSM::sms.getMessage(carl), nullptr);

    // Call dials the number behind the name shown.
    user.chooseMenu(IDM_INBOX_CALL);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    EXPECT_EQ(calls, std::vector<QString>{QStringLiteral("+4917033333")});

    // Reply and forward go to the library, which hands the new message to the host.
    user.chooseMenu(IDM_INBOX_REPLY).chooseMenu(IDM_INBOX_FORWARD);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    settle();
    EXPECT_EQ(edited.size(), 2u);

    // Send Now on an Outbox row queues it and lets the sending notification show again.
    user.chooseMenu(IDM_FOLDER_OUTBOX);
    ASSERT_TRUE(testkit::click(*main, IDC_MAIN_FOLDER));
    user.chooseMenu(IDM_OUTBOX_SEND_NOW);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    EXPECT_EQ(environment.sendingAllowed, 1);
    EXPECT_NE(user.menus().back().find(IDM_OUTBOX_SEND_NOW), nullptr);

    // "Delete..." opens the Delete Messages window for the Outbox.
    user.chooseMenu(IDM_OUTBOX_DELETE_MESSAGES);
    ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST, 0));
    Dialog* deleteWindow = testkit::findWindow(IDD_DELETE_MESSAGES);
    ASSERT_NE(deleteWindow, nullptr);
    EXPECT_TRUE(deleteWindow->isVisible());
    EXPECT_TRUE(errors.empty());
}

TEST_F(MainWindowTest, CopyToPhonebookAsksWhenTheNumberIsStoredAlready) {
    ASSERT_TRUE(simulator::addContact(u"Anne", u"Ames", {u"+4917011111"}).isOk());
    const struct {
        const char16_t* sender;
        int answer; // 0: no question expected
        int contactsAfter;
    } cases[] = {
        {u"0172222", 0, 2},
        {u"0171111", 0, 3}, // a number without trunk zero match: a new one
        {u"+4917011111", IDNO, 3},
        {u"+4917011111", IDYES, 4},
    };
    for (const auto& c : cases) {
        store({message(0, GSM::Message::Read, c.sender, u"x", at(2024, 5, 17, 9, 0))});
        MainSmsWindow* main = openMain();
        user.forget();
        user.chooseMenu(IDM_INBOX_COPY_TO_PHONEBOOK);
        if (c.answer)
            user.answerBox(c.answer);
        if (c.answer != IDNO)
            user.answerBox(IDOK);
        tessaly::ListView* list = main->listView(IDC_MAIN_LIST);
        ASSERT_TRUE(testkit::tapAndHold(*main, IDC_MAIN_LIST,
                                        list->findItemData(LPARAM(idsByDate(0).back()))));
        if (c.answer) {
            EXPECT_EQ(user.boxes().front().text,
                      QStringLiteral("Number is already stored in contacts. Do you really want to "
                                     "add it again?"));
            EXPECT_EQ(user.boxes().front().icon(), MB_ICONEXCLAMATION);
        }
        if (c.answer != IDNO) {
            EXPECT_EQ(user.boxes().back().text,
                      QStringLiteral("The Contact has been added to the Phonebook"));
        }
        GSM::Folder* book = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts);
        EXPECT_EQ(book->size(), c.contactsAfter) << QString::fromUtf16(c.sender).toStdString();
        main->destroyWindow();
        settle();
    }
}

TEST_F(MainWindowTest, RowsOfALongListAreFilledWhenScrolledToAndOpenTheirMessage) {
    std::vector<simulator::StoredMessage> messages;
    for (int day = 1; day <= 28; ++day)
        for (int hour = 0; hour < 12; ++hour)
            messages.push_back(
                message(0, GSM::Message::Read, u"0172222",
                        QStringLiteral("day %1 hour %2").arg(day).arg(hour).toStdU16String(),
                        at(2024, 4, day, hour, 0)));
    store(messages);
    MainSmsWindow* main = openMain();
    tessaly::ListView* list = main->listView(IDC_MAIN_LIST);
    ASSERT_EQ(list->itemCount(), 336);
    list->scrollToBottom();
    const int last = list->itemCount() - 1;
    EXPECT_EQ(list->itemText(last, 2), QStringLiteral("day 1 hour 0"));
    EXPECT_EQ(list->itemText(last, 3), QStringLiteral("04-01"));
    QString shown;
    user.runModal([&](Dialog& view) { shown = view.itemText(IDC_VIEW_TEXT); });
    ASSERT_TRUE(testkit::select(*main, IDC_MAIN_LIST, last, 2));
    EXPECT_EQ(shown, QStringLiteral("day 1 hour 0"));
}

TEST_F(MainWindowTest, StoreChangesRebuildTheListShown) {
    storeThreeInbox();
    MainSmsWindow* main = openMain();
    ASSERT_TRUE(simulator::receiveMessage(u"0179999", u"fresh\nnews").isOk());
    settle();
    EXPECT_EQ(column(*main, 2).first(), QString::fromUtf16(u"fresh\u2022news"));
    EXPECT_EQ(main->listView(IDC_MAIN_LIST)->itemImage(0), 0);
}

TEST_F(MainWindowTest, DraggedColumnWidthsAreSavedForTheFolder) {
    MainSmsWindow* main = openMain();
    environment.saved.clear();
    ASSERT_TRUE(testkit::dragColumnDivider(*main, IDC_MAIN_LIST, 2, 123));
    ASSERT_EQ(environment.saved.size(), 1u);
    EXPECT_EQ(environment.saved.back().columnWidths(0),
              (SmsSettings::ColumnWidths{20, 80, 123, 40}));
    EXPECT_EQ(environment.saved.back().columnWidths(1),
              (SmsSettings::ColumnWidths{20, 80, 100, 40}));
}

TEST_F(MainWindowTest, OkHandsControlBackAndActivationNamesTheService) {
    MainSmsWindow* main = openMain();
    main->sendCommand(IDOK);
    EXPECT_EQ(environment.handBacks, 1);
    EXPECT_TRUE(main->isVisible());
    activeServices.clear();
    ASSERT_TRUE(testkit::activate(*main, false));
    ASSERT_TRUE(testkit::activate(*main, true));
    settle();
    EXPECT_EQ(activeServices, (std::vector<GSM::ServiceId>{GSM::ServiceNone, GSM::ServiceSms}));
    main->destroyWindow();
    settle();
    EXPECT_EQ(environment.destroyed, std::vector<Dialog*>{main});
}

TEST_F(MainWindowTest, OptionsStayDisabledUntilTheSheetExistsAndInfoShowsTheAbout) {
    MainSmsWindow* main = openMain();
    EXPECT_FALSE(testkit::chooseCommand(*main, IDM_MAIN_OPTIONS));
    user.answerBox(IDOK);
    EXPECT_TRUE(testkit::chooseCommand(*main, IDM_MAIN_INFO));
    EXPECT_EQ(tessaly::Shell::current().aboutShown(), 1);
}

} // namespace
