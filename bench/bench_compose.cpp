// The composer: one keystroke's status-line update in a text of 1,600 characters (the length
// query runs on every change), SEND of a template-rich text to 1,000 recipients up to the
// hand-over (the radio's timers never run here), and the contact picker over a phone book of
// 10,000 contacts from the tap to its first paint (goal 100 ms).

#include "bench/answering_user.h"
#include "bench/offscreen_benchmarks.h"
#include "bench/template_rich_text.h"
#include "compose/composer_environment.h"
#include "compose/composer_window.h"
#include "compose/submit.h"
#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "gsm/gsm.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "settings/sms_settings.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

namespace {

namespace telephony = tessaly::telephony;

class QuietEnvironment final : public tessaly::sms::ComposerEnvironment {
public:
    QuietEnvironment() {
        record.insertGreeting = false;
        record.insertSignature = false;
        record.firstName = QStringLiteral("Ann");
        record.lastName = QStringLiteral("Lee");
        record.phone = QStringLiteral("+4912");
    }
    SmsSettings& settings() override { return record; }
    void composerDestroyed(tessaly::Dialog*) override {}
    SmsSettings record;
};

void sendKey(QWidget* editor, int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(editor, &press);
    QApplication::sendEvent(editor, &release);
}

void BM_ComposerKeystroke(benchmark::State& state) {
    QuietEnvironment environment;
    auto* composer = tessaly::sms::ComposerWindow::open(GSM::Message::make(), environment);
    tessaly::Edit* text = composer->edit(IDC_COMPOSE_TEXT);
    // Words and placeholders, as people write, filled up to the length asked for.
    QString start = templateRichText().left(int(state.range(0)));
    start += QString(int(state.range(0)) - start.size(), u'.');
    text->setText(start);
    text->setCaretPos(text->textLength());
    QWidget* editor = text->editor();
    editor->setFocus();
    bool add = true;
    for (auto _ : state) {
        if (add)
            sendKey(editor, Qt::Key_B, QStringLiteral("b"));
        else
            sendKey(editor, Qt::Key_Backspace, QString());
        add = !add;
        benchmark::DoNotOptimize(composer->itemText(IDC_COMPOSE_COUNTER));
    }
    composer->destroyWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
BENCHMARK(BM_ComposerKeystroke)->Arg(1600)->Unit(benchmark::kMicrosecond);

void BM_SubmitPerRecipient(benchmark::State& state) {
    const int count = int(state.range(0));
    QStringList numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(QStringLiteral("+49 170 %1").arg(1000000 + i));
    tessaly::sms::SendForm form;
    form.toText = numbers.join(QStringLiteral(", "));
    form.messageText = templateRichText();
    form.serviceCentre = QStringLiteral("+491710760000");
    form.recipientCount = count;
    form.chosenContactNumber = QStringLiteral("+111");
    const tessaly::sms::SenderInfo sender{QStringLiteral("Ann"), QStringLiteral("Lee"),
                                          QStringLiteral("+4912")};
    for (auto _ : state) {
        GSM::Message* message = GSM::Message::make();
        tessaly::sms::MessageSubmitter submitter(message, sender, nullptr);
        if (!submitter.send(form))
            state.SkipWithError("SEND did not hand the messages over");
        state.PauseTiming();
        telephony::EventQueue::instance().clear();
        state.ResumeTiming();
    }
    state.counters["outbox"] = GSM::sms.messageCount(GSM::Sms::FolderOutbox);
}
BENCHMARK(BM_SubmitPerRecipient)->Arg(1000)->Unit(benchmark::kMillisecond);

// The picker window Qt's agent shows, closed as soon as it has painted.
void BM_ContactPicker(benchmark::State& state) {
    const int count = int(state.range(0));
    for (int i = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts)->size(); i < count;
         ++i) {
        const std::u16string suffix = QString::number(i).toStdU16String();
        telephony::simulator::addContact(u"Person", suffix, {u"+4917" + suffix});
    }
    telephony::EventQueue::instance().clear();
    tessaly::UserAgent& answering = tessaly::UserAgent::current();
    tessaly::UserAgent::install(nullptr);
    GSM::Folder* picker = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderPicker);
    for (auto _ : state) {
        QTimer::singleShot(0, [] {
            if (auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                window->repaint();
                window->reject();
            }
        });
        picker->pick(nullptr);
    }
    tessaly::UserAgent::install(&answering);
    state.counters["contacts"] = count;
}
BENCHMARK(BM_ContactPicker)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    QTemporaryDir dataDirectory;
    tessaly::setDataDirectory(dataDirectory.path());
    tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
    tessaly::profile::setProfileName(QStringLiteral("SMS"));
    tessaly::setCurrentResources(&tessaly::sms::resources());
    telephony::Options options;
    options.databasePath = QStringLiteral(":memory:");
    telephony::open(options);
    AnsweringUser user(IDYES); // no question is expected with complete sender information
    tessaly::UserAgent::install(&user);
    benchmarks.run();
    tessaly::UserAgent::install(nullptr);
    telephony::close();
    tessaly::releaseRegistryHives();
    tessaly::setCurrentResources(nullptr);
    tessaly::setDataDirectory(QString());
    return 0;
}
