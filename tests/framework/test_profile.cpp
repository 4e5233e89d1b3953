#include "framework/registry/profile.h"

#include "registry_test_support.h"

using registry_test::wide;
namespace profile = tessaly::profile;

namespace {

class ProfileTest : public registry_test::RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        profile::setProfileName(QStringLiteral("SMS"));
    }
    void TearDown() override {
        profile::setRegistryKey(QString());
        profile::setProfileName(QString());
        RegistryTest::TearDown();
    }

    static QString missing() { return QStringLiteral("<default>"); }
};

} // namespace

TEST_F(ProfileTest, EntriesLiveUnderSoftwareRegistryKeyProfileName) {
    ASSERT_TRUE(profile::writeProfileString(QStringLiteral("Templates"), QStringLiteral("Hello"),
                                            QStringLiteral("Hi there")));
    HKEY key = nullptr;
    ASSERT_EQ(
        open(HKEY_CURRENT_USER, QStringLiteral("Software\\Halvern\\Tessaly\\SMS\\Templates"), &key),
        ERROR_SUCCESS);
    DWORD type = 0;
    DWORD size = 0;
    ASSERT_EQ(RegQueryValueExW(key, u"Hello", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(size, 18u) << "eight characters and the terminating zero, two bytes each";
    RegCloseKey(key);

    HKEY app = profile::getAppRegistryKey();
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(subKeyNames(app), std::vector<QString>{QStringLiteral("Templates")});
    RegCloseKey(app);
}

TEST_F(ProfileTest, TextsRoundTrip) {
    const QString texts[] = {
        QString(),
        QStringLiteral("plain"),
        QStringLiteral("quotes \" and 'apostrophes', %s %d & \\ backslash"),
        QString::fromUtf16(u"Grüße, Ωμέγα, 😀 and a line\nbreak"),
        QString(5000, QLatin1Char('L')),
    };
    for (const QString& text : texts) {
        SCOPED_TRACE(text.left(40).toStdString());
        // An empty text is an entry of its own, not a deletion.
        const QString written = text.isNull() ? QStringLiteral("") : text;
        ASSERT_TRUE(
            profile::writeProfileString(QStringLiteral("Round"), QStringLiteral("Entry"), written));
        EXPECT_EQ(
            profile::getProfileString(QStringLiteral("round"), QStringLiteral("ENTRY"), missing()),
            written);
    }
}

TEST_F(ProfileTest, DefaultsStandInForWhatCannotBeRead) {
    ASSERT_TRUE(profile::writeProfileString(QStringLiteral("Sec"), QStringLiteral("there"),
                                            QStringLiteral("x")));
    HKEY section = profile::getSectionKey(QStringLiteral("Sec"));
    ASSERT_NE(section, nullptr);
    const DWORD number = 5;
    ASSERT_EQ(
        RegSetValueExW(section, u"number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4),
        ERROR_SUCCESS);
    // Written by another program without its terminating zero.
    const QString bare = QStringLiteral("bare");
    ASSERT_EQ(
        RegSetValueExW(section, u"bare", 0, REG_SZ, reinterpret_cast<const BYTE*>(bare.utf16()), 8),
        ERROR_SUCCESS);
    RegCloseKey(section);

    struct Case {
        const char16_t* section;
        const char16_t* entry;
        QString expected;
    };
    const Case cases[] = {
        {u"Sec", u"there", QStringLiteral("x")},
        {u"Sec", u"absent", missing()},
        {u"NoSuchSection", u"there", missing()},
        {u"Sec", u"number", missing()},
        {u"Sec", u"bare", bare},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.entry).toStdString());
        EXPECT_EQ(profile::getProfileString(QString::fromUtf16(c.section),
                                            QString::fromUtf16(c.entry), missing()),
                  c.expected);
    }
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER,
                   QStringLiteral("Software\\Halvern\\Tessaly\\SMS\\NoSuchSection"), &key),
              ERROR_FILE_NOT_FOUND)
        << "reading creates nothing";
}

TEST_F(ProfileTest, NullTextDeletesTheEntryAndNullEntryTheSection) {
    const QString section = QStringLiteral("Variables\\Ending");
    ASSERT_TRUE(profile::writeProfileString(section, QStringLiteral("01"), QStringLiteral("Bye")));
    ASSERT_TRUE(profile::writeProfileString(section, QStringLiteral("02"), QStringLiteral("Ciao")));

    EXPECT_TRUE(profile::writeProfileString(section, QStringLiteral("01"), QString()));
    EXPECT_EQ(profile::getProfileString(section, QStringLiteral("01"), missing()), missing());
    EXPECT_EQ(profile::getProfileString(section, QStringLiteral("02"), missing()),
              QStringLiteral("Ciao"));
    // Deleting what is not there succeeds and does not create the section.
    EXPECT_TRUE(
        profile::writeProfileString(QStringLiteral("Ghost"), QStringLiteral("x"), QString()));
    HKEY ghost = nullptr;
    EXPECT_EQ(
        open(HKEY_CURRENT_USER, QStringLiteral("Software\\Halvern\\Tessaly\\SMS\\Ghost"), &ghost),
        ERROR_FILE_NOT_FOUND);

    EXPECT_FALSE(profile::writeProfileString(QStringLiteral("Variables"), QString(), QString()))
        << "a section with subkeys stays";
    EXPECT_TRUE(profile::writeProfileString(section, QString(), QString()));
    EXPECT_EQ(profile::getProfileString(section, QStringLiteral("02"), missing()), missing());
    EXPECT_TRUE(profile::writeProfileString(QStringLiteral("Variables"), QString(), QString()));
}

TEST_F(ProfileTest, NothingIsWrittenWithoutRegistryKeyAndProfileName) {
    profile::setRegistryKey(QString());
    EXPECT_EQ(profile::getAppRegistryKey(), nullptr);
    EXPECT_EQ(profile::getSectionKey(QStringLiteral("Templates")), nullptr);
    EXPECT_FALSE(profile::writeProfileString(QStringLiteral("Templates"), QStringLiteral("a"),
                                             QStringLiteral("b")));
    EXPECT_EQ(
        profile::getProfileString(QStringLiteral("Templates"), QStringLiteral("a"), missing()),
        missing());
    HKEY software = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, QStringLiteral("Software"), &software), ERROR_FILE_NOT_FOUND);
}
