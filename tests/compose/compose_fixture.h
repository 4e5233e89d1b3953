#pragma once

// Composer tests against a real telephony store in memory: the module's resources, a profile
// of its own with the factory templates, a scripted user, a virtual clock, and host hooks that
// open a composer whenever the library hands a message to edit (as the module's editMessage
// does).

#include "compose/composer_environment.h"
#include "compose/composer_window.h"
#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "gsm/gsm.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "settings/sms_settings.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"
#include "templates/factory_defaults.h"
#include "tests/suite/telephony/store_test_support.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/window_test.h"
#include "util/wide_text.h"

#include <vector>

namespace compose_test {

namespace simulator = tessaly::telephony::simulator;
using tessaly::sms::ComposerWindow;

class RecordingEnvironment final : public tessaly::sms::ComposerEnvironment {
public:
    SmsSettings& settings() override { return record; }
    void composerDestroyed(tessaly::Dialog* composer) override { destroyed.push_back(composer); }

    SmsSettings record;
    std::vector<tessaly::Dialog*> destroyed;
};

// One message's outcome as the Outbox holds it.
struct OutboxMessage {
    QStringList recipients;
    QString text;
    int status = 0;
};

class ComposeTest : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
        tessaly::setCurrentResources(&tessaly::sms::resources());
        tessaly::sms::seedFactoryDefaults();
        tessaly::telephony::HostHooks hooks;
        hooks.editMessage = [this](GSM::Message* message) {
            opened.push_back(ComposerWindow::open(message, environment));
        };
        hooks.isServiceAvailable = [](GSM::ServiceId) { return true; };
        tessaly::telephony::installHostHooks(hooks);
        ASSERT_TRUE(telephony_test::openInstantStore());
        environment.record.insertGreeting = false;
        environment.record.insertSignature = false;
    }

    void TearDown() override {
        WindowTest::TearDown();
        settle(); // the radio's timers too, before the store closes
        telephony_test::closeStore();
        tessaly::releaseRegistryHives();
    }

    void settle() { telephony_test::settle(clock); }

    // "New" as the main window asks for it; the composer the library's answer opened.
    ComposerWindow* newComposer() {
        const size_t before = opened.size();
        EXPECT_TRUE(GSM::sms.newMessage(0).isOk());
        settle();
        return opened.size() > before ? opened.back() : nullptr;
    }

    ComposerWindow* forwardComposer(long id) {
        const size_t before = opened.size();
        EXPECT_TRUE(GSM::sms.forwardMessage(id).isOk());
        settle();
        return opened.size() > before ? opened.back() : nullptr;
    }

    long receive(const std::u16string& from, const std::u16string& text) {
        long id = 0;
        EXPECT_TRUE(simulator::receiveMessage(from, text, std::nullopt, u"", &id).isOk());
        return id;
    }

    static QString text(ComposerWindow& composer, int id) { return composer.itemText(id); }

    // The Outbox, oldest first.
    static std::vector<OutboxMessage> outbox() {
        std::vector<OutboxMessage> messages;
        GSM::MessageContainer* container =
            GSM::sms.getMessages(GSM::Sms::FolderOutbox, GSM::Sms::SortByDate);
        for (int i = 0; container && i < container->size(); ++i) {
            GSM::Message* message = container->get(i);
            OutboxMessage entry;
            entry.text = tessaly::sms::fromWide(message->getText());
            entry.status = message->getStatus();
            if (GSM::Folder* recipients = message->getContacts())
                for (int r = 0; r < recipients->size(); ++r)
                    entry.recipients.append(tessaly::sms::fromWide(
                        recipients->get(r)->getText(GSM::Contact::FieldNumber, 1)));
            messages.push_back(entry);
        }
        return messages;
    }

    static QString favourite(int number) {
        return tessaly::profile::getProfileString(QStringLiteral("Favourites"),
                                                  QString::asprintf("%02d", number));
    }

    RecordingEnvironment environment;
    std::vector<ComposerWindow*> opened;
};

} // namespace compose_test
