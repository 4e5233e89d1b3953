#pragma once

// What the end-to-end tests share: the phone's start-up on a data directory of its own (the
// system language recorded as British English, the telephony library open without sending
// delays), starting the module in a host session, finding the module's windows, running the loop
// until something happens, and pictures of the whole phone for a person to look at.
// TESSALY_SMS_MODULE_PATH comes from each test's CMake target.

#include "framework/datadir.h"
#include "framework/ui/dialog.h"
#include "host/host_session.h"
#include "host/phone_window.h"
#include "host/screenshot.h"
#include "host/system_language.h"
#include "suite/telephony/events.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/window_driver.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace e2e_test {

inline ::testing::AssertionResult openPhoneData(const QString& dataDirectory) {
    tessaly::setDataDirectory(dataDirectory);
    if (!tessaly::host::recordSystemLanguage(QStringLiteral("en_GB.UTF-8")))
        return ::testing::AssertionFailure() << "the system language was not recorded";
    tessaly::telephony::Options options;
    options.segmentDelayMs = 0;
    options.simTransferDelayMs = 0;
    if (!tessaly::telephony::open(options).isOk())
        return ::testing::AssertionFailure() << "the telephony library did not open";
    return ::testing::AssertionSuccess();
}

inline void closePhoneData() {
    tessaly::telephony::close();
    tessaly::setDataDirectory(QString());
}

// Each test runs on a phone data directory of its own, removed afterwards.
class PhoneDataTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir_.isValid());
        ASSERT_TRUE(openPhoneData(dataDir_.path()));
    }
    void TearDown() override { closePhoneData(); }

private:
    QTemporaryDir dataDir_;
};

// Loads Sms.tsm into the phone's session.
inline ::testing::AssertionResult startModule(tessaly::host::HostSession& session) {
    QString error;
    if (!session.start(QStringLiteral(TESSALY_SMS_MODULE_PATH), &error))
        return ::testing::AssertionFailure() << error.toStdString();
    return ::testing::AssertionSuccess();
}

// The module's windows of one template (the framework is shared by host and module).
inline std::vector<tessaly::Dialog*> windowsOf(int templateId) {
    std::vector<tessaly::Dialog*> found;
    for (tessaly::Dialog* dialog : tessaly::Dialog::windows())
        if (dialog->templateId() == templateId && dialog->isWindow())
            found.push_back(dialog);
    return found;
}

// Runs the loop and the library's queue until `done` holds (the radio sends on real timers) or
// `timeoutMs` has passed.
template <typename Done> bool settleUntil(Done done, int timeoutMs = 1000) {
    const QDeadlineTimer deadline(timeoutMs);
    do {
        QCoreApplication::processEvents();
        tessaly::telephony::EventQueue::instance().deliverAll();
        if (done())
            return true;
    } while (!deadline.hasExpired());
    return false;
}

// A picture of the whole phone in the build folder's test output; nothing is compared.
inline bool savePicture(const tessaly::host::PhoneWindow& phone, const QString& name) {
    const QString path = tessaly::testkit::testOutputPath(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    return tessaly::host::grabPhone(phone).save(path);
}

} // namespace e2e_test
