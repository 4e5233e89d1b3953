#include "host/running_phone.h"
#include "tests/testkit/qstring_printer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <future>

namespace {

using namespace tessaly::host;

// The hand-over blocks on its answer, so it runs beside the loop that answers it.
HandOver handOverWhileListening(const QString& name, const QString& link) {
    std::future<HandOver> handed =
        std::async(std::launch::async, [name, link] { return handToRunningPhone(name, link); });
    const QDeadlineTimer deadline(10000);
    while (handed.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready &&
           !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return handed.get();
}

TEST(RunningPhone, OneNamePerDataDirectory) {
    QTemporaryDir first;
    QTemporaryDir second;
    const QString sameByAnotherPath =
        first.path() + QStringLiteral("/../") + QDir(first.path()).dirName() + QStringLiteral("/");
    EXPECT_EQ(runningPhoneName(first.path()), runningPhoneName(sameByAnotherPath));
    EXPECT_NE(runningPhoneName(first.path()), runningPhoneName(second.path()));
}

TEST(RunningPhone, TheRunningPhoneGetsEachLinkAndNobodyElse) {
    QTemporaryDir data;
    const QString name = runningPhoneName(data.path());
    EXPECT_EQ(handToRunningPhone(name, QStringLiteral("sms:0170")), HandOver::NoPhone);

    RunningPhoneListener listener;
    QStringList received;
    QObject::connect(&listener, &RunningPhoneListener::handedOver,
                     [&received](const QString& link) { received << link; });
    QString error;
    ASSERT_TRUE(listener.listen(name, &error)) << error.toStdString();
    EXPECT_EQ(handOverWhileListening(name, QStringLiteral("sms:+4917012345?body=Hi%20there")),
              HandOver::HandedOver);
    EXPECT_EQ(handOverWhileListening(name, QString()), HandOver::HandedOver);
    EXPECT_EQ(received, (QStringList{"sms:+4917012345?body=Hi%20there", ""}));
}

TEST(RunningPhone, ASocketLeftByACrashedPhoneIsTakenOver) {
    QTemporaryDir data;
    const QString name = runningPhoneName(data.path());
    QFile left(name);
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.close();
    EXPECT_EQ(handToRunningPhone(name, QString()), HandOver::NoPhone);
    RunningPhoneListener listener;
    QString error;
    EXPECT_TRUE(listener.listen(name, &error)) << error.toStdString();
    EXPECT_EQ(handOverWhileListening(name, QString()), HandOver::HandedOver);
}

TEST(RunningPhone, APhoneThatDoesNotAnswerIsNotTakenForNone) {
    QTemporaryDir data;
    const QString name = runningPhoneName(data.path());
    RunningPhoneListener listener; // its loop never runs here
    QString error;
    ASSERT_TRUE(listener.listen(name, &error)) << error.toStdString();
    EXPECT_EQ(handToRunningPhone(name, QString(), 200), HandOver::NoAnswer);
}

} // namespace
