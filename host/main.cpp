// tessaly-phone: the suite's host with the SMS module and a simulator panel.

#include "framework/datadir.h"
#include "framework/registry/registry.h"
#include "framework/resources/language.h"
#include "framework/time/clock.h"
#include "framework/ui/shell.h"
#include "host/archive_command.h"
#include "host/demo_data.h"
#include "host/desktop_notifications.h"
#include "host/factory_sounds.h"
#include "host/host_options.h"
#include "host/host_session.h"
#include "host/message_alerts.h"
#include "host/modem_watcher.h"
#include "host/phone_window.h"
#include "host/radio_choice.h"
#include "host/running_phone.h"
#include "host/screenshot.h"
#include "host/system_language.h"
#include "host/termination_signals.h"
#include "suite/modemmanager/modemmanager_backend.h"
#include "suite/telephony/telephony.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <optional>

namespace {

QStringList rawArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

void fail(const QString& message) {
    std::fprintf(stderr, "tessaly-phone: %s\n", qPrintable(message));
}

// Closes the registry hives and the telephony store: their last connections write everything
// back into the files and remove the -wal and -shm files.
void closeDataFiles() {
    tessaly::telephony::close();
    tessaly::releaseRegistryHives();
}

// Closing the phone screen or the simulator ends the program, whatever module windows are open
// (they refuse a plain close, as the phone's own windows do).
class EndOnClose : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Close)
            QApplication::exit(0);
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char** argv) {
    QString error;
    const std::optional<tessaly::host::HostOptions> options =
        tessaly::host::parseHostArguments(rawArguments(argc, argv), &error);
    if (!options) {
        fail(error + QStringLiteral("\n") + tessaly::host::hostUsage());
        return 2;
    }
    if (options->help) {
        std::printf("%s", qPrintable(tessaly::host::hostUsage()));
        return 0;
    }
    if (!options->importFile.isEmpty() || !options->exportFile.isEmpty()) {
        QCoreApplication app(argc, argv);
        return tessaly::host::runArchiveCommand(*options);
    }
    if (!options->screenshotPath.isEmpty() && !hasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!hasDisplay()) {
        fail(QStringLiteral(
            "there is no display to show the phone on.\n"
            "  make run                  starts a virtual screen and a VNC server on 127.0.0.1\n"
            "  QT_QPA_PLATFORM=offscreen tessaly-phone --screenshot phone.png\n"
            "                            draws the phone into a picture without a screen"));
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessaly-phone"));
    const tessaly::host::TerminationSignals terminationSignals;
    if (!options->dataDirectory.isEmpty())
        tessaly::setDataDirectory(options->dataDirectory);

    // One phone per data directory: a second start hands its link to the running one. A
    // picture run stands alone, as it always takes its own directory.
    std::optional<tessaly::host::RunningPhoneListener> runningPhone;
    if (options->screenshotPath.isEmpty()) {
        const QString name = tessaly::host::runningPhoneName(tessaly::dataDirectory());
        const QString link =
            options->smsLink ? tessaly::host::toSmsLink(*options->smsLink) : QString();
        switch (tessaly::host::handToRunningPhone(name, link)) {
        case tessaly::host::HandOver::NoPhone:
            break;
        case tessaly::host::HandOver::HandedOver:
            std::printf("tessaly-phone: the phone of this data directory is already running; "
                        "it has come to the front%s\n",
                        link.isEmpty() ? "" : " with the new message");
            return 0;
        case tessaly::host::HandOver::NoAnswer:
            fail(QStringLiteral("a phone runs on %1 but does not answer; end it before starting "
                                "another on the same data")
                     .arg(tessaly::dataDirectory()));
            return 1;
        }
        runningPhone.emplace();
        if (!runningPhone->listen(name, &error))
            fail(error + QStringLiteral(" (a second start will not find this phone)"));
    }

    // A damaged hive would leave the phone without its settings and templates, and nothing
    // the person changed would be kept: stop before anything runs, as for the store.
    if (const QString problem = tessaly::openRegistryHives(); !problem.isEmpty()) {
        fail(QStringLiteral("%1\nThe phone keeps its settings and templates in that file and "
                            "has left it as it is. Move it aside to start with factory "
                            "settings, or put back a copy that works.")
                 .arg(problem));
        tessaly::releaseRegistryHives();
        return 1;
    }
    tessaly::host::recordSystemLanguage(tessaly::startupLanguage());
    tessaly::host::installFactorySounds(tessaly::Shell::current().soundsFolder());
    if (const GSM::Result opened = tessaly::telephony::open(); !opened.isOk()) {
        fail(QString::fromUtf16(opened.getErrorMessage()));
        tessaly::releaseRegistryHives();
        return 1;
    }
    if (options->demo) {
        GSM::Result seedError;
        switch (tessaly::host::seedDemoData(tessaly::Clock::current().localNow(), &seedError)) {
        case tessaly::host::DemoSeeding::Seeded:
            break;
        case tessaly::host::DemoSeeding::AlreadyHadData:
            std::fprintf(stderr, "tessaly-phone: the data directory already holds data; "
                                 "no demo data added\n");
            break;
        case tessaly::host::DemoSeeding::Failed:
            fail(QStringLiteral("demo data: %1")
                     .arg(QString::fromUtf16(seedError.getErrorMessage())));
            break;
        }
    }

    int status = 0;
    {
        tessaly::host::PhoneWindow phone;
        tessaly::host::ArchiveMenu archiveMenu(phone.homeScreen());
        tessaly::host::HostSession session(&phone);
        if (!session.start(tessaly::host::defaultModulePath(), &error)) {
            fail(error);
            if (options->screenshotPath.isEmpty())
                QMessageBox::critical(nullptr, QStringLiteral("Tessaly phone"), error);
            closeDataFiles();
            return 1;
        }
        const tessaly::host::RadioChoice radio = tessaly::host::chooseRadio(
            options->radio, tessaly::telephony::ModemManagerBackend::defaultBus());
        if (!radio.ok) {
            fail(radio.error);
            session.stop();
            closeDataFiles();
            return 1;
        }
        std::printf("tessaly-phone: radio: %s\n", qPrintable(radio.description));
        std::fflush(stdout);
        // Auto follows modems that come and go while the phone runs.
        std::optional<tessaly::host::ModemWatcher> modemWatcher;
        if (options->radio == tessaly::host::RadioKind::Auto)
            modemWatcher.emplace(tessaly::telephony::ModemManagerBackend::defaultBus());
        // A picture run tells the desktop nothing.
        std::optional<tessaly::host::DesktopNotifications> desktop;
        std::optional<tessaly::host::MessageAlerts> alerts;
        if (options->screenshotPath.isEmpty()) {
            desktop.emplace();
            alerts.emplace(
                *desktop, [&phone] { return phone.isActive(); },
                [&session](long id) { session.showMessage(id); });
            session.setMessageListener([&alerts](long id) { alerts->messageArrived(id); });
            session.setDeliveryListener([&alerts](long id, int recipient, bool delivered) {
                alerts->messageDelivered(id, recipient, delivered);
            });
        }
        std::optional<tessaly::host::ScreenshotRun> screenshot;
        if (!options->screenshotPath.isEmpty())
            screenshot.emplace(phone, options->screenshotPath);
        phone.show();
        EndOnClose endOnClose;
        phone.homeScreen()->installEventFilter(&endOnClose);
        phone.simulator()->installEventFilter(&endOnClose);
        const auto openLink = [&](const tessaly::host::SmsLink& link) {
            if (const GSM::Result opened = session.openComposer(link); !opened.isOk()) {
                const QString why = QString::fromUtf16(opened.getErrorMessage());
                fail(QStringLiteral("the link's message cannot be opened: %1").arg(why));
                phone.homeScreen()->showStatus(why);
            }
        };
        // Pressed from the event loop: the Messages press may bring up a modal box, and its
        // loop must find the picture run ready.
        QTimer::singleShot(0, &app, [&] {
            if (screenshot)
                screenshot->arm();
            if (options->openMessages)
                phone.homeScreen()->messagesButton()->click();
            if (options->smsLink)
                openLink(*options->smsLink);
        });
        if (runningPhone) {
            QObject::connect(&*runningPhone, &tessaly::host::RunningPhoneListener::handedOver, &app,
                             [&](const QString& link) {
                                 phone.showHomeScreen();
                                 if (link.isEmpty())
                                     return;
                                 if (const auto parsed = tessaly::host::parseSmsLink(link, &error))
                                     openLink(*parsed);
                                 else
                                     fail(error);
                             });
        }
        status = app.exec();
        session.setMessageListener({});
        session.stop();
        tessaly::telephony::setRadioBackend(nullptr);
    }
    closeDataFiles();
    return status;
}
