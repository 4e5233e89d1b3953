#include "module/exports.h"
#include "module/module_context.h"
#include "module/module_language.h"
#include "module/sending_notification.h"
#include "module/startup.h"
#include "tests/module/log_capture.h"
#include "tests/testkit/scripted_user.h"

#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/telephony.h"
#include "util/registry_key.h"
#include "util/suite_registry.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using module_test::LogCapture;
using tessaly::sms::moduleContext;

// The module in-process on an in-memory telephony store, with a fresh module state per test.
class ModuleExports : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir_.isValid());
        tessaly::setDataDirectory(dataDir_.path());
        tessaly::telephony::Options options;
        options.databasePath = QStringLiteral(":memory:");
        ASSERT_TRUE(tessaly::telephony::open(options).isOk());
        tessaly::telephony::HostHooks hooks;
        hooks.moduleIdle = [this](void* hostIdle) { idleCalls.push_back(hostIdle); };
        tessaly::telephony::installHostHooks(hooks);
        freshModule();
    }
    void TearDown() override {
        freshModule();
        tessaly::telephony::installHostHooks({});
        tessaly::telephony::close();
        tessaly::setDataDirectory(QString());
    }

    // What the telephony library keeps for the SMS service.
    static void storeSettings(const SmsSettings& settings) {
        const QByteArray blob = settings.encode();
        ASSERT_TRUE(GSM::Preferences::setPreferences(GSM::ServiceSms, blob.constData(),
                                                     static_cast<unsigned long>(blob.size()))
                        .isOk());
    }
    static SmsSettings signedAs(const QString& firstName, bool showProgress = true) {
        SmsSettings settings;
        settings.firstName = firstName;
        settings.showProgress = showProgress;
        return settings;
    }
    static void deliverEvents() {
        QCoreApplication::processEvents();
        tessaly::telephony::EventQueue::instance().deliverAll();
    }

    // A module as after loading: the windows of the previous one are gone.
    static void freshModule() {
        tessaly::sms::destroyAllWindows();
        deliverEvents();
        moduleContext() = tessaly::sms::ModuleContext();
        moduleContext().resources = &tessaly::sms::resources();
    }

    std::vector<void*> idleCalls;
    // Closes every message view that openMessage runs.
    tessaly::testkit::ScriptedUser user;

private:
    QTemporaryDir dataDir_;
};

TEST_F(ModuleExports, OnlyTheExportsThatNeedTheSettingsLoadThem) {
    const struct {
        const char* call;
        std::function<void()> run;
        bool loads;
    } cases[] = {
        {"initModule", [] { initModule(nullptr); }, false},
        {"exitModule", [] { exitModule(); }, false},
        {"openSms", [] { openSms(); }, true},
        {"openMessage",
         [this] {
             user.runModal({});
             openMessage(4);
         },
         true},
        {"editMessage", [] { editMessage(nullptr); }, true},
        {"openMessageNotification", [] { openMessageNotification(4); }, true},
        {"openSendingNotification", [] { openSendingNotification(4, 0, 1, 2, 0, 0); }, true},
        {"openSendingCompletion", [] { openSendingCompletion(GSM::Result(), false); }, false},
        {"openSimNotification(0, 0)", [] { openSimNotification(0, 0); }, false},
        {"openSimNotification(3, 5)", [] { openSimNotification(3, 5); }, true},
        {"openSimNotification(-1, -1)", [] { openSimNotification(-1, -1); }, true},
    };
    storeSettings(signedAs(QStringLiteral("Ada")));
    for (const auto& c : cases) {
        freshModule();
        const LogCapture log;
        c.run();
        EXPECT_EQ(moduleContext().settings.loaded, c.loads) << c.call;
        EXPECT_EQ(moduleContext().settings.firstName, c.loads ? QStringLiteral("Ada") : QString())
            << c.call;
    }
}

TEST_F(ModuleExports, SettingsAreReadOnceAndNeverAgain) {
    const LogCapture log;
    storeSettings(signedAs(QStringLiteral("Ada")));
    openSms();
    storeSettings(signedAs(QStringLiteral("Grace")));
    user.runModal({});
    openMessage(1);
    openMessageNotification(1);
    EXPECT_EQ(moduleContext().settings.firstName, QStringLiteral("Ada"));
}

TEST_F(ModuleExports, NothingStoredLeavesTheDefaultsAndIsNotRetried) {
    const LogCapture log;
    openSms();
    EXPECT_TRUE(moduleContext().settings.loaded);
    EXPECT_EQ(moduleContext().settings, [] {
        SmsSettings defaults;
        defaults.loaded = true;
        return defaults;
    }());
    storeSettings(signedAs(QStringLiteral("Ada")));
    openSms();
    EXPECT_TRUE(moduleContext().settings.firstName.isEmpty());
}

TEST_F(ModuleExports, AClosedStoreLeavesTheDefaults) {
    tessaly::telephony::close();
    const LogCapture log;
    openSms();
    EXPECT_TRUE(moduleContext().settings.loaded);
    EXPECT_TRUE(moduleContext().settings.showProgress);
}

TEST_F(ModuleExports, SaveWritesTheRecordTheNextModuleReads) {
    tessaly::sms::loadSettings().firstName = QStringLiteral("Lin");
    ASSERT_TRUE(tessaly::sms::saveSettings());
    moduleContext() = tessaly::sms::ModuleContext();
    EXPECT_EQ(tessaly::sms::loadSettings().firstName, QStringLiteral("Lin"));

    tessaly::telephony::close();
    EXPECT_FALSE(tessaly::sms::saveSettings()) << "a refused write is reported";
}

TEST_F(ModuleExports, ProgressIsShownOnlyWhenWantedAndNotDismissed) {
    const struct {
        bool showProgress;
        bool suppressed;
        bool reachesTheWindow;
    } cases[] = {
        {true, false, true},
        {false, false, false},
        {true, true, false},
        {false, true, false},
    };
    for (const auto& c : cases) {
        freshModule();
        storeSettings(signedAs(QString(), c.showProgress));
        moduleContext().sendingNotificationSuppressed = c.suppressed;
        openSendingNotification(7, 0, 1, 3, 0, 0);
        EXPECT_EQ(moduleContext().sendingNotification != nullptr, c.reachesTheWindow)
            << "show progress " << c.showProgress << ", suppressed " << c.suppressed;
        EXPECT_EQ(moduleContext().sendingNotificationSuppressed, c.suppressed);

        // The completion looks at neither.
        openSendingCompletion(GSM::Result(GSM::ErrorNetworkRejected, u"Rejected"), true);
        ASSERT_NE(moduleContext().sendingNotification, nullptr);
        EXPECT_TRUE(moduleContext().sendingNotification->hasCompletion());
    }
}

TEST_F(ModuleExports, AnEmptySimReportWithoutTheWindowDoesNothingAtAll) {
    openSimNotification(0, 0);
    EXPECT_EQ(moduleContext().simTransferWindow, nullptr);
    EXPECT_FALSE(moduleContext().settings.loaded);

    openSimNotification(-1, -1);
    EXPECT_NE(moduleContext().simTransferWindow, nullptr) << "created to hear that the move ended";
}

TEST_F(ModuleExports, TheIdlePointerGoesBackUnchanged) {
    int hostObject = 0;
    initModule(&hostObject);
    EXPECT_FALSE(moduleContext().settings.loaded) << "initModule reads no settings";
    tessaly::sms::handBackControlIfIdle();
    deliverEvents();
    EXPECT_EQ(idleCalls, std::vector<void*>{&hostObject});
}

TEST_F(ModuleExports, AfterExitTheModuleStartsAfreshButKeepsIdlePointerAndSettings) {
    const LogCapture log;
    int hostObject = 0;
    initModule(&hostObject);
    storeSettings(signedAs(QStringLiteral("Ada")));
    openSms();
    ASSERT_NE(moduleContext().mainWindow, nullptr);
    moduleContext().sendingNotificationSuppressed = true;
    exitModule();

    EXPECT_FALSE(tessaly::sms::hasOpenWindows());
    EXPECT_EQ(moduleContext().hostIdle, &hostObject);
    EXPECT_TRUE(moduleContext().settings.loaded);
    storeSettings(signedAs(QStringLiteral("Grace")));
    openSms();
    EXPECT_NE(moduleContext().mainWindow, nullptr) << "a new main window";
    EXPECT_EQ(moduleContext().settings.firstName, QStringLiteral("Ada"));
}

TEST_F(ModuleExports, EveryExportRunsInTheModulesStateAndRestoresTheCallers) {
    const tessaly::ResourceScript& moduleResources = tessaly::sms::resources();
    moduleContext().resources = &moduleResources;
    const tessaly::ResourceScript callerResources;
    int callerData = 0;
    const tessaly::ModuleStateGuard caller(&callerResources, &callerData);

    {
        const tessaly::sms::ModuleScope scope;
        EXPECT_EQ(tessaly::currentModuleState(),
                  (tessaly::ModuleState{&moduleResources, &moduleContext()}));
        EXPECT_FALSE(tessaly::loadString(IDS_STATUS_DELETED).isEmpty());
    }
    const LogCapture log;
    openSms();
    openSimNotification(0, 0);
    exitModule();
    EXPECT_EQ(tessaly::currentModuleState(), (tessaly::ModuleState{&callerResources, &callerData}));
}

TEST(ModuleLanguage, TheSystemLanguageIndexNamesTheResources) {
    const struct {
        int index;
        const char* language;
    } cases[] = {{0, "en"}, {1, "de"}, {2, "es"},  {3, "it"}, {4, "fr"},
                 {5, "zh"}, {6, "zh"}, {7, "qps"}, {8, "en"}, {-1, "en"}};
    for (const auto& c : cases)
        EXPECT_EQ(tessaly::sms::languageForIndex(c.index), QLatin1String(c.language)) << c.index;
}

class ModuleStartup : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir_.isValid());
        tessaly::setDataDirectory(dataDir_.path());
        moduleContext() = tessaly::sms::ModuleContext();
        seenProfileKey().clear();
        seenText().clear();
    }
    void TearDown() override {
        moduleContext() = tessaly::sms::ModuleContext();
        tessaly::setDataDirectory(QString());
    }

    static QString& seenProfileKey() {
        static QString key;
        return key;
    }
    static QString& seenText() {
        static QString text;
        return text;
    }
    static void recordSeeding() {
        seenProfileKey() =
            tessaly::profile::registryKey() + u'\\' + tessaly::profile::profileName();
        seenText() = tessaly::loadString(IDS_STATUS_DELETED);
    }

private:
    QTemporaryDir dataDir_;
};

TEST_F(ModuleStartup, SeedingRunsWithTheProfileSetAndTheModulesResourcesInForce) {
    const tessaly::ModuleState before = tessaly::currentModuleState();
    tessaly::sms::startModule(&ModuleStartup::recordSeeding);
    EXPECT_EQ(seenProfileKey(), QStringLiteral("Halvern\\Tessaly\\SMS"));
    EXPECT_FALSE(seenText().isEmpty());
    EXPECT_EQ(tessaly::currentModuleState(), before) << "the loader's state comes back";
    EXPECT_FALSE(moduleContext().settings.loaded) << "nothing is read before initModule";
}

TEST_F(ModuleStartup, TheRecordedSystemLanguageChoosesTheResources) {
    EXPECT_EQ(tessaly::sms::languageForIndex(systemLanguageIndex()), QStringLiteral("en"))
        << "nothing recorded";
    RegistryKey international;
    international.create(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Microsoft\\International");
    ASSERT_TRUE(international.setDword(u"LCID", 0x0407));
    EXPECT_EQ(tessaly::sms::languageForIndex(systemLanguageIndex()), QStringLiteral("de"));
    tessaly::sms::startModule(nullptr);
    EXPECT_EQ(moduleContext().resources, &tessaly::sms::systemLanguageResources());
    EXPECT_FALSE(moduleContext().resources->strings.empty());
}

} // namespace
