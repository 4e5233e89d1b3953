#include "telephony_fixture.h"

#include "gsm/gsm.h"

#include <QFile>

#include <sqlite3.h>

namespace {

using telephony_test::text;
namespace sim = tessaly::telephony::simulator;

class MessageStore : public telephony_test::TelephonyTest {
protected:
    sim::StoredMessage inbox(std::u16string from, std::u16string body, GSM::Message::Status status,
                             double ageDays) {
        return {0, status, {std::move(from)}, std::move(body), daysAgo(clock, ageDays)};
    }

    std::vector<std::u16string> texts(int folder, int sortKey) {
        std::vector<std::u16string> result;
        GSM::MessageContainer* container = GSM::sms.getMessages(folder, sortKey);
        for (int i = 0; container && i < container->size(); ++i)
            result.push_back(container->get(i)->getText());
        return result;
    }

    static int unread(GSM::MessageContainer* inbox) {
        const int read = inbox->getFirst(GSM::Message::Read);
        return read - std::min(read, inbox->getFirst(GSM::Message::Unread));
    }
};

TEST_F(MessageStore, ContainersFollowTheirSortKey) {
    ASSERT_TRUE(sim::addContact(u"Zoe", u"Zander", {u"+4917000001"}).isOk());
    ASSERT_TRUE(sim::addContact(u"Adam", u"Abel", {u"+4917000002"}).isOk());
    ASSERT_TRUE(sim::addStoredMessages({
                                           inbox(u"+4917000001", u"d3", GSM::Message::Read, 3),
                                           inbox(u"0170 00002", u"d1", GSM::Message::Unread, 1),
                                           inbox(u"+4917000009", u"d4", GSM::Message::Replied, 4),
                                           inbox(u"01700 0002", u"d2", GSM::Message::Read, 2),
                                           inbox(u"+4917000001", u"d5", GSM::Message::Unread, 5),
                                       })
                    .isOk());
    EXPECT_EQ(texts(0, 0), (std::vector<std::u16string>{u"d5", u"d4", u"d3", u"d2", u"d1"}));
    // Unread (2) before Read (3) before Replied (5); by date within a status.
    EXPECT_EQ(texts(0, 2), (std::vector<std::u16string>{u"d5", u"d1", u"d3", u"d2", u"d4"}));
    // By name where the phone book knows the number ("Adam Abel" < "Zoe Zander"), by number
    // otherwise (digits sort before letters).
    EXPECT_EQ(texts(0, 1), (std::vector<std::u16string>{u"d4", u"d2", u"d1", u"d5", u"d3"}));
    EXPECT_TRUE(texts(1, 0).empty());
    EXPECT_EQ(GSM::sms.getMessages(2, 0), nullptr);
    EXPECT_EQ(GSM::sms.getMessages(0, 3), nullptr);
    EXPECT_EQ(GSM::sms.getMessages(0, 0)->get(5), nullptr);
    EXPECT_EQ(GSM::sms.getMessages(0, 0)->get(-1), nullptr);
}

TEST_F(MessageStore, UnreadCountComesFromGetFirst) {
    const struct {
        int unreadMessages;
        int readMessages;
    } cases[] = {{3, 5}, {0, 5}, {4, 0}, {0, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.unreadMessages);
        ASSERT_TRUE(GSM::sms.deleteMessages(0, 0).isOk());
        std::vector<sim::StoredMessage> seed;
        for (int i = 0; i < c.readMessages; ++i)
            seed.push_back(inbox(u"+4917011", u"r", GSM::Message::Read, i));
        for (int i = 0; i < c.unreadMessages; ++i)
            seed.push_back(inbox(u"+4917011", u"u", GSM::Message::Unread, i + 0.5));
        seed.push_back(inbox(u"+4917011", u"replied", GSM::Message::Replied, 9));
        ASSERT_TRUE(sim::addStoredMessages(seed).isOk());
        EXPECT_EQ(unread(GSM::sms.getMessages(0, 2)), c.unreadMessages);
        EXPECT_EQ(GSM::sms.unreadCount(), c.unreadMessages);
    }
}

TEST_F(MessageStore, ContainerIsASnapshotThatStaysValid) {
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"first").isOk());
    GSM::MessageContainer* before = GSM::sms.getMessages(0, 0);
    EXPECT_EQ(GSM::sms.getMessages(0, 0), before) << "unchanged store, same snapshot";
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"second").isOk());
    GSM::MessageContainer* after = GSM::sms.getMessages(0, 0);
    EXPECT_NE(after, before);
    EXPECT_EQ(before->size(), 1);
    EXPECT_EQ(after->size(), 2);
    // A deleted message stays readable through the snapshot and the pointer handed out.
    GSM::Message* first = before->get(0);
    ASSERT_TRUE(GSM::sms.setMessageStatus(first->getId(), GSM::Message::Deleted).isOk());
    EXPECT_EQ(text(first->getText()), u"first");
    EXPECT_EQ(GSM::sms.getMessage(first->getId()), nullptr);
    EXPECT_EQ(GSM::sms.getMessage(987654), nullptr);
}

TEST_F(MessageStore, StatusChangesAreChecked) {
    long id = 0;
    ASSERT_TRUE(sim::receiveMessage(u"+4917011", u"x", std::nullopt, u"", &id).isOk());
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Unread);
    EXPECT_TRUE(GSM::sms.setMessageStatus(id, GSM::Message::Read).isOk());
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Read);
    EXPECT_EQ(GSM::sms.setMessageStatus(id, GSM::Message::SendNow).errorCode(),
              GSM::ErrorInvalidArgument);
    EXPECT_EQ(GSM::sms.setMessageStatus(id, GSM::Message::Status(12)).errorCode(),
              GSM::ErrorInvalidArgument);
    EXPECT_EQ(GSM::sms.setMessageStatus(id + 100, GSM::Message::Read).errorCode(),
              GSM::ErrorNotFound);
}

TEST_F(MessageStore, DeletesByAge) {
    const struct {
        int folder;
        int days;
        std::vector<std::u16string> left;
    } cases[] = {
        {0, 30, {u"10d", u"now"}},
        {0, 10, {u"10d", u"now"}}, // exactly ten days old is not older than ten days
        {0, 9, {u"now"}},
        {0, 0, {}},
        {1, 0, {u"40d", u"10d", u"now"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.days);
        GSM::sms.deleteMessages(0, 0);
        ASSERT_TRUE(sim::addStoredMessages({inbox(u"1", u"100d", GSM::Message::Read, 100),
                                            inbox(u"1", u"40d", GSM::Message::Read, 40),
                                            inbox(u"1", u"10d", GSM::Message::Read, 10),
                                            inbox(u"1", u"now", GSM::Message::Unread, 0)})
                        .isOk());
        ASSERT_TRUE(GSM::sms.deleteMessages(c.folder, c.days).isOk());
        std::vector<std::u16string> left = texts(0, 0);
        if (c.folder == 1)
            left.erase(left.begin()); // the 100-day message: the Inbox was not touched
        EXPECT_EQ(left, c.left);
    }
    EXPECT_EQ(GSM::sms.deleteMessages(0, -1).errorCode(), GSM::ErrorInvalidArgument);
    EXPECT_EQ(GSM::sms.deleteMessages(2, 0).errorCode(), GSM::ErrorInvalidArgument);
}

TEST_F(MessageStore, DeletingKeepsWhatTheRadioHolds) {
    ASSERT_TRUE(
        sim::addStoredMessages({{1, GSM::Message::Sent, {u"1"}, u"sent", daysAgo(clock, 5)},
                                {1, GSM::Message::Failed, {u"1"}, u"failed", daysAgo(clock, 5)}})
            .isOk());
    GSM::Message* queued = GSM::Message::make();
    queued->getContacts()->add(u"+4917011", 0);
    queued->setText(u"queued");
    ASSERT_TRUE(queued->endEdit(false).isOk());
    ASSERT_TRUE(GSM::sms.deleteMessages(1, 0).isOk());
    EXPECT_EQ(texts(1, 0), std::vector<std::u16string>{u"queued"});
}

TEST_F(MessageStore, EndEditStoresOrDiscards) {
    GSM::Message* kept = GSM::Message::make();
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->getStatus(), GSM::Message::NotSent);
    kept->setText(u"hello");
    kept->setValidityPeriod(GSM::Message::OneWeek);
    kept->getContacts()->add(u"+4917011", 0);
    EXPECT_EQ(GSM::sms.getMessage(kept->getId()), nullptr) << "not stored before endEdit";
    ASSERT_TRUE(kept->endEdit(false).isOk());
    EXPECT_EQ(GSM::sms.getMessage(kept->getId()), kept);
    EXPECT_EQ(kept->getStatus(), GSM::Message::SendNow);
    EXPECT_EQ(kept->getValidityPeriod(), 175);

    GSM::Message* dropped = GSM::Message::make();
    dropped->setText(u"never");
    ASSERT_TRUE(dropped->endEdit(true).isOk());
    EXPECT_EQ(GSM::sms.getMessage(dropped->getId()), nullptr);
    EXPECT_FALSE(dropped->endEdit(false).isOk()) << "a discarded message cannot be sent later";
    EXPECT_EQ(GSM::sms.messageCount(1), 1);
}

TEST_F(MessageStore, DiscardingAnEditOfAStoredMessageRestoresIt) {
    ASSERT_TRUE(sim::addStoredMessages({{1, GSM::Message::NotSent, {u"111", u"222"}, u"draft", {}}})
                    .isOk());
    GSM::Message* message = GSM::sms.getMessages(1, 0)->get(0);
    message->setText(u"changed");
    message->getContacts()->removeAll();
    ASSERT_TRUE(message->endEdit(true).isOk());
    EXPECT_EQ(text(message->getText()), u"draft");
    EXPECT_EQ(message->getContacts()->size(), 2);
}

TEST_F(MessageStore, NewReplyAndForwardReachTheEditor) {
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+4917011", u"Dinner?", std::nullopt, u"+4917100", &id).isOk());
    ASSERT_TRUE(GSM::sms.newMessage(0).isOk());
    ASSERT_TRUE(GSM::sms.replyMessage(id).isOk());
    ASSERT_TRUE(GSM::sms.forwardMessage(id).isOk());
    EXPECT_TRUE(edited.empty()) << "the editor is called after the request has returned";
    EXPECT_EQ(GSM::sms.replyMessage(id + 50).errorCode(), GSM::ErrorNotFound);
    settle();
    ASSERT_EQ(edited.size(), 3u);
    EXPECT_EQ(edited[0]->getContacts()->size(), 0);
    EXPECT_EQ(text(edited[0]->getText()), u"");
    ASSERT_EQ(edited[1]->getContacts()->size(), 1);
    EXPECT_EQ(text(edited[1]->getContacts()->get(0)->getText(0, 1)), u"+4917011");
    EXPECT_EQ(edited[2]->getStatus(), GSM::Message::Forwarded);
    EXPECT_EQ(text(edited[2]->getText()), u"Dinner?");
    EXPECT_EQ(edited[2]->getContacts()->size(), 0);
    ASSERT_TRUE(edited[1]->endEdit(false).isOk());
    EXPECT_EQ(GSM::sms.getMessage(id)->getStatus(), GSM::Message::Replied);
}

TEST_F(MessageStore, MessagesSurviveReopening) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    openStore(path);
    ASSERT_TRUE(sim::addContact(u"Anna", u"Berg", {u"+491711234567", u"030 1"}).isOk());
    long id = 0;
    ASSERT_TRUE(
        sim::receiveMessage(u"+491711234567", u"Grüße 😀", std::nullopt, u"+4917100", &id).isOk());
    GSM::Message* outgoing = GSM::Message::make();
    outgoing->getContacts()->add(u"0301", 0);
    outgoing->getContacts()->add(GSM::PhoneBook::lookup(u"01711234567"));
    outgoing->setText(u"two");
    outgoing->setUseSameServiceCentre(true);
    ASSERT_TRUE(outgoing->endEdit(false).isOk());
    const long outgoingId = outgoing->getId();
    const unsigned char record[] = {1, 2, 3, 0, 255};
    ASSERT_TRUE(GSM::Preferences::setPreferences(GSM::ServiceSms, record, sizeof record).isOk());
    GSM::Preferences::getMainPreferences()->setTickerHorizontal(false);
    GSM::Preferences::getMainPreferences()->serviceCentres()->add(u"Home", u"+4917200");
    GSM::Preferences::getMainPreferences()->serviceCentres()->setPreferred(1);
    const Utilities::Range channel{50, 51};
    ASSERT_TRUE(GSM::CellBroadcast::setMessageTypes(1, &channel, 0, nullptr).isOk());
    ASSERT_TRUE(sim::receiveCellBroadcast(50, u"Sunny").isOk());

    tessaly::telephony::close();
    openStore(path);
    GSM::Message* incoming = GSM::sms.getMessage(id);
    ASSERT_NE(incoming, nullptr);
    EXPECT_EQ(text(incoming->getText()), u"Grüße 😀");
    EXPECT_EQ(text(incoming->getServiceCentre()), u"+4917100");
    EXPECT_EQ(fileTimeToUInt64(incoming->date()), clock.nowTicks);
    EXPECT_EQ(text(incoming->getContacts()->get(0)->getText(GSM::Contact::FieldFullName)),
              u"Anna Berg");
    GSM::Message* reopened = GSM::sms.getMessage(outgoingId);
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(reopened->getStatus(), GSM::Message::SendNow) << "still queued after a restart";
    EXPECT_TRUE(reopened->useSameServiceCentre());
    ASSERT_EQ(reopened->getContacts()->size(), 2);
    EXPECT_EQ(text(reopened->getContacts()->get(1)->getText(0, 1)), u"+491711234567");
    ASSERT_EQ(GSM::Preferences::getSizeOfPreferences(GSM::ServiceSms), sizeof record);
    unsigned char back[sizeof record] = {};
    ASSERT_TRUE(GSM::Preferences::getPreferences(GSM::ServiceSms, back).isOk());
    EXPECT_EQ(0, memcmp(back, record, sizeof record));
    GSM::MainPreferences* main = GSM::Preferences::getMainPreferences();
    EXPECT_FALSE(main->tickerHorizontal());
    EXPECT_EQ(main->serviceCentres()->count(), 2);
    EXPECT_EQ(main->serviceCentres()->preferred(), 1);
    GSM::CbFolder folder;
    std::unique_ptr<GSM::CbMessage> broadcast(folder.get(50));
    ASSERT_NE(broadcast, nullptr);
    EXPECT_EQ(text(broadcast->messageText()), u"Sunny");
    settle();
    EXPECT_EQ(reopened->getStatus(), GSM::Message::Sent);
}

TEST_F(MessageStore, DamagedDatabaseIsReportedAndLeftAlone) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    const QByteArray garbage(4096, 'x');
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(garbage);
    }
    tessaly::telephony::Options options;
    options.databasePath = path;
    const GSM::Result result = tessaly::telephony::open(options);
    ASSERT_FALSE(result.isOk());
    EXPECT_EQ(result.errorCode(), GSM::ErrorStorage);
    const QString message = QString::fromUtf16(result.getErrorMessage());
    EXPECT_TRUE(message.contains(path)) << message.toStdString();
    EXPECT_TRUE(message.contains(QStringLiteral("not a database"))) << message.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), garbage) << "a damaged file is never replaced";
    // Every call then answers with the reason, and nothing crashes.
    EXPECT_EQ(GSM::sms.getMessages(0, 0), nullptr);
    EXPECT_EQ(GSM::Message::make(), nullptr);
    EXPECT_EQ(GSM::sms.deleteMessages(0, 0).errorCode(), GSM::ErrorStorage);
    EXPECT_EQ(GSM::Preferences::getMainPreferences(), nullptr);
}

TEST_F(MessageStore, DatabaseFromANewerVersionIsRefused) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    sqlite3_exec(db, "PRAGMA user_version=99", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    tessaly::telephony::Options options;
    options.databasePath = path;
    const GSM::Result result = tessaly::telephony::open(options);
    EXPECT_FALSE(result.isOk());
    EXPECT_TRUE(QString::fromUtf16(result.getErrorMessage()).contains(QStringLiteral("newer")));
}

class ServiceCentres : public telephony_test::TelephonyTest {
protected:
    GSM::ServiceCentreList* list() {
        return GSM::Preferences::getMainPreferences()->serviceCentres();
    }
    std::u16string name(int index) { return text(list()->get(index)->name()); }
};

TEST_F(ServiceCentres, SimEntryStaysFirstAndPreferredStaysValid) {
    ASSERT_TRUE(sim::setSimServiceCentre(u"+4917100").isOk());
    EXPECT_EQ(list()->count(), 1);
    EXPECT_TRUE(list()->isEmpty());
    EXPECT_EQ(text(list()->get(0)->number()), u"+4917100");
    for (const char16_t* entry : {u"A", u"B", u"C", u"D"})
        ASSERT_TRUE(list()->add(entry, u"+1").isOk());
    EXPECT_FALSE(list()->isEmpty());

    const struct {
        int preferred;
        int removed;
        int preferredAfter;
        std::u16string preferredName;
    } cases[] = {
        {3, 1, 2, u"C"},   // an earlier entry goes: the same entry stays preferred
        {2, 3, 2, u"B"},   // a later entry goes: nothing moves
        {2, 2, 0, u"SIM"}, // the preferred entry goes: the SIM's own takes over
    };
    for (const auto& c : cases) {
        list()->removeAll();
        for (const char16_t* entry : {u"A", u"B", u"C", u"D"})
            list()->add(entry, u"+1");
        ASSERT_TRUE(list()->setPreferred(c.preferred).isOk());
        ASSERT_TRUE(list()->remove(c.removed).isOk());
        EXPECT_EQ(list()->preferred(), c.preferredAfter);
        EXPECT_EQ(name(list()->preferred()), c.preferredName);
    }
    EXPECT_EQ(list()->remove(0).errorCode(), GSM::ErrorInvalidArgument);
    EXPECT_EQ(list()->remove(list()->count()).errorCode(), GSM::ErrorInvalidArgument);
    EXPECT_EQ(list()->setPreferred(-1).errorCode(), GSM::ErrorInvalidArgument);
    EXPECT_EQ(list()->add(u"empty", u"").errorCode(), GSM::ErrorInvalidArgument);
    ASSERT_TRUE(list()->setPreferred(list()->count() - 1).isOk());
    ASSERT_TRUE(list()->removeAll().isOk());
    EXPECT_EQ(list()->count(), 1);
    EXPECT_EQ(name(0), u"SIM");
    EXPECT_EQ(list()->preferred(), 0);
    EXPECT_EQ(list()->get(1), nullptr);
}

TEST_F(ServiceCentres, NewMessagesUseThePreferredCentreAndMainPreferences) {
    GSM::MainPreferences* main = GSM::Preferences::getMainPreferences();
    EXPECT_EQ(main->validityPeriod(), 255);
    EXPECT_TRUE(main->sendWhileRoaming());
    EXPECT_FALSE(main->useSameServiceCentre());
    EXPECT_EQ(main->playSound(), 1);
    EXPECT_TRUE(main->tickerScrolls());
    EXPECT_EQ(main->reserved07(), 0);
    EXPECT_TRUE(main->reserved30(5).isOk());
    EXPECT_EQ(main->setValidityPeriod(256).errorCode(), GSM::ErrorInvalidArgument);
    main->setValidityPeriod(GSM::Message::OneDay);
    main->setUseSameServiceCentre(true);
    list()->add(u"Home", u"+4917200");
    list()->setPreferred(1);
    GSM::Message* message = GSM::Message::make();
    EXPECT_EQ(message->getValidityPeriod(), GSM::Message::OneDay);
    EXPECT_TRUE(message->useSameServiceCentre());
    EXPECT_EQ(text(message->getServiceCentre()), u"+4917200");
}

} // namespace
